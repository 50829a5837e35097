#include "registry.hpp"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>

namespace zt {

std::vector<CommandDef> Commands() {
    std::vector<CommandDef> v = Registry<CommandDef>();
    std::stable_sort(v.begin(), v.end(), [](const CommandDef& a, const CommandDef& b) { return a.order < b.order; });
    return v;
}

std::vector<SpaceDef> Spaces() {
    std::vector<SpaceDef> v = Registry<SpaceDef>();
    std::sort(v.begin(), v.end(), [](const SpaceDef& a, const SpaceDef& b) { return std::string(a.name) < b.name; });
    return v;
}

std::vector<DemoDef> DemoSections() {
    std::vector<DemoDef> v = Registry<DemoDef>();
    std::stable_sort(v.begin(), v.end(), [](const DemoDef& a, const DemoDef& b) { return a.order < b.order; });
    return v;
}

const SpaceDef* FindSpace(const std::string& name) {
    for (const SpaceDef& s : Registry<SpaceDef>())
        if (name == s.name) return &s;
    return nullptr;
}

std::string DemoFmt(const char* format, double v) {
    char b[64];
    std::snprintf(b, sizeof b, format, v);
    return b;
}

std::string DemoDb(double v) { return std::isinf(v) ? "exact" : DemoFmt("%.2f", v); }

double DemoBestMs(const std::function<void()>& f) {
    double best = 1e300, total = 0;
    for (int i = 0; i < 5 && total < 60.0; ++i) {
        const auto t0 = std::chrono::steady_clock::now();
        f();
        const double ms = std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - t0).count();
        best = std::min(best, ms);
        total += ms;
    }
    return best;
}

}  // namespace zt
