// What a family brings to the tool, each from files of its own: subcommands,
// colour spaces for `zilcc convert --to/--from`, and demo sections. A file
// registers its rows with ZT_REGISTER at start-up (the tool, unlike the
// library, may run static initialisers); the tool lists them sorted, so the
// order in which files are linked does not matter.
#pragma once

#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include "common.hpp"
#include "progress.hpp"

namespace zt {

// ---- subcommands ------------------------------------------------------------
struct CommandDef {
    const char* name;     // `zilcc NAME ...`
    const char* summary;  // one line (at most ~60 characters) for `zilcc --help`
    int (*run)(int argc, char** argv, int first);  // as the Run* functions of commands.hpp
    int order;            // place in the help list, ascending
};

// ---- colour spaces for `zilcc convert IN OUT --to NAME` / `--from NAME` ------
// Image file to image file: the space's channels are written as the library
// stores them (8- or 16-bit PNG/PNM; float images as PFM). Both directions
// keep the extent.
struct SpaceDef {
    const char* name;  // lower case, as typed after --to / --from
    const char* help;  // one line for `zilcc convert --help`
    // RGB (or grey, which the function may refuse) of depth 8, 16 or 32 (float)
    // to the space; throws DataError for a depth the space does not take.
    Image (*toSpace)(const Image& rgb, Progress* progress);
    // The space's channels back to RGB, same depth rules.
    Image (*fromSpace)(const Image& encoded, Progress* progress);
};

// ---- demo sections ----------------------------------------------------------
struct DemoFigure {
    std::string file, title, caption;
};
struct DemoSection {
    std::string title, intro;
    std::vector<DemoFigure> figures;
};
// What a demo section is given.
struct DemoKit {
    int w, h;
    double mp;             // megapixels of the scene
    const Image& scene8;   // RGB, 8 bits
    const Image& scene16;  // RGB, 16 bits
    std::ostringstream& summary;  // the terminal summary; a section adds a few lines
    // Writes a PNG (8 or 16 bit; a float image must be mapped first) into the
    // demo folder and returns the file name for a DemoFigure.
    std::function<std::string(const std::string& name, const Image& img)> write;
    // Writes raw bytes (e.g. a PFM) into the demo folder; returns the name.
    std::function<std::string(const std::string& name, const std::vector<uint8_t>& bytes)> writeBytes;
    std::function<void(DemoSection&&)> add;
};
struct DemoDef {
    const char* name;  // for messages
    int order;         // sections run in ascending order after the built-in ones (100 and up)
    void (*run)(DemoKit& kit);
};

// Helpers that demo sections share.
std::string DemoFmt(const char* format, double v);
std::string DemoDb(double psnr);  // "exact" for infinity, else "%.2f"
double DemoBestMs(const std::function<void()>& f);  // best of a few runs, in ms

// ---- the registries -----------------------------------------------------------
template <class T>
std::vector<T>& Registry() {
    static std::vector<T> rows;
    return rows;
}
template <class T>
bool Register(const T& row) {
    Registry<T>().push_back(row);
    return true;
}
// Sorted copies: commands and demo sections by order, spaces by name.
std::vector<CommandDef> Commands();
std::vector<SpaceDef> Spaces();
std::vector<DemoDef> DemoSections();
const SpaceDef* FindSpace(const std::string& name);

#define ZT_CAT2(a, b) a##b
#define ZT_CAT(a, b) ZT_CAT2(a, b)
// ZT_REGISTER(SpaceDef{"lab", "...", ToLab, FromLab});
#define ZT_REGISTER(...) \
    namespace { [[maybe_unused]] const bool ZT_CAT(zt_registered_, __LINE__) = ::zt::Register(__VA_ARGS__); }

}  // namespace zt
