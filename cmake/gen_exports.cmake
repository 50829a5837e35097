# Generates, from the one export list, everything of the entry table:
#   zil_stubs.S        the export stubs (descending byte order of names, one
#                      32-byte cell each: a 6-byte indirect jump through its
#                      slot, the rest int3 filler) and the slot table arraddr at
#                      the very start of the writable data;
#   zil_exports.inc    ZIL_EXPORT(name) in slot order, for the tests.
# Input: EXPORTS_FILE; output directory: OUT_DIR.
file(STRINGS "${EXPORTS_FILE}" lines)
set(names "")
foreach(line IN LISTS lines)
  string(STRIP "${line}" line)
  if(line STREQUAL "" OR line MATCHES "^#")
    continue()
  endif()
  if(NOT line MATCHES "^[A-Za-z_][A-Za-z0-9_]*$")
    message(FATAL_ERROR "bad export name '${line}' in ${EXPORTS_FILE}")
  endif()
  list(APPEND names "${line}")
endforeach()
list(LENGTH names count)
set(unique ${names})
list(REMOVE_DUPLICATES unique)
list(LENGTH unique ucount)
if(NOT count EQUAL ucount)
  message(FATAL_ERROR "duplicate names in ${EXPORTS_FILE}")
endif()
# STRING comparison is a plain byte comparison: lower case sorts above upper case.
list(SORT names COMPARE STRING ORDER DESCENDING)

set(asm "/* Generated from the export list; do not edit. */\n")
string(APPEND asm "\t.text\n\t.p2align 5\n")
set(slot 0)
foreach(n IN LISTS names)
  math(EXPR off "${slot} * 8")
  string(APPEND asm "\t.globl ${n}\n\t.type ${n},@function\n\t.p2align 5\n${n}:\n"
                    "\tjmp *arraddr+${off}(%rip)\n\t.fill 26,1,0xcc\n\t.size ${n},32\n")
  math(EXPR slot "${slot} + 1")
endforeach()
string(APPEND asm "\n\t.data\n\t.p2align 3\n\t.hidden arraddr\n\t.globl arraddr\n"
                  "\t.type arraddr,@object\n\t.size arraddr,${count}*8\narraddr:\n")
foreach(n IN LISTS names)
  string(APPEND asm "\t.quad mx_${n}\n")
endforeach()
string(APPEND asm "\n\t.section .note.GNU-stack,\"\",@progbits\n")

set(inc "/* Generated from the export list; do not edit. Slot order. */\n")
foreach(n IN LISTS names)
  string(APPEND inc "ZIL_EXPORT(${n})\n")
endforeach()

# Write only when changed, so an unchanged list rebuilds nothing.
foreach(pair "zil_stubs.S;asm" "zil_exports.inc;inc")
  list(GET pair 0 fname)
  list(GET pair 1 var)
  set(path "${OUT_DIR}/${fname}")
  set(old "")
  if(EXISTS "${path}")
    file(READ "${path}" old)
  endif()
  if(NOT old STREQUAL "${${var}}")
    file(WRITE "${path}" "${${var}}")
  endif()
endforeach()
