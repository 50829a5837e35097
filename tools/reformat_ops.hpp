// Raw YUV to raw YUV through the chroma reformatting calls.
#pragma once

#include <string>
#include <vector>

#include "args.hpp"

namespace zt {

// `zilcc convert IN OUT --from LAYOUT --to LAYOUT --size WxH [--verbose]`.
int ConvertRaw(const Args& a);
// The usage lines and layout list for `zilcc convert --help`.
std::string RawConvertHelp();
// One direct call from layout `from` to layout `to` on a dense frame (the two
// must have one, as nv12 -> i420 or yuy2 -> i420 do).
std::vector<uint8_t> RelayoutFrame(const std::string& from, const std::string& to, std::vector<uint8_t>& in, int w,
                                   int h);

}  // namespace zt
