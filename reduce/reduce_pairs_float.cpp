// ReduceBits from floats: 32f to 8u, 16u and 16s.
#include "reduce_pair.h"

namespace zil::reduce {
namespace {

ZIL_REDUCE_PAIR(32f8u, k32f8u, float, uint8_t)
ZIL_REDUCE_PAIR(32f16u, k32f16u, float, uint16_t)
ZIL_REDUCE_PAIR(32f16s, k32f16s, float, int16_t)

}  // namespace
}  // namespace zil::reduce
