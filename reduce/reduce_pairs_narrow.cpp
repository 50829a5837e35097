// ReduceBits from 16-bit elements to bytes: 16u to 8u and 16s to 8u.
#include "reduce_pair.h"

namespace zil::reduce {
namespace {

ZIL_REDUCE_PAIR(16u8u, k16u8u, uint16_t, uint8_t)
ZIL_REDUCE_PAIR(16s8u, k16s8u, int16_t, uint8_t)

}  // namespace
}  // namespace zil::reduce
