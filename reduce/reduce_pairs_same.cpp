// ReduceBits of the pairs that keep the element type: 8u, 16u, 16s.
#include "reduce_pair.h"

namespace zil::reduce {
namespace {

ZIL_REDUCE_PAIR(8u, k8u, uint8_t, uint8_t)
ZIL_REDUCE_PAIR(16u, k16u, uint16_t, uint16_t)
ZIL_REDUCE_PAIR(16s, k16s, int16_t, int16_t)

}  // namespace
}  // namespace zil::reduce
