#include "bench/Comparison.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iomanip>

namespace {

constexpr int cAttempts = 3;

// From microseconds to a unit.
double ScaleOf(const std::string& unit) {
    if (unit == "ns") return 1000;
    if (unit == "ms") return 0.001;
    return 1;
}

std::vector<Contender> ContendersOf(const std::function<void()>& ours, const std::vector<Peer>& peers) {
    std::vector<Contender> contenders = {{"ours", ours}};
    for (const Peer& peer : peers) contenders.push_back({peer.name, peer.run});
    return contenders;
}

struct Result {
    double ours, theirs, ratio;
};

// The third place of a ratio is noise.
constexpr double cNoise = 0.005;

bool IsBeyond(const Limits& limits, double ratio) {
    return limits.HasGoal() && ratio > limits.bar + cNoise;
}

// Takes over what is better than before; whether a peer is still beyond its bar.
bool Improve(std::vector<Result>& results, const std::vector<Cost>& costs, const std::vector<Peer>& peers) {
    bool isBeyond = false;
    for (std::size_t i = 0; i < peers.size(); ++i) {
        const Cost& cost = costs[i + 1];
        if (results.size() == i) {
            results.push_back({costs[0].microseconds, cost.microseconds, cost.ratio});
        } else if (cost.ratio < results[i].ratio) {
            results[i] = {costs[0].microseconds, cost.microseconds, cost.ratio};
        }
        isBeyond = isBeyond || IsBeyond(peers[i].limits, results[i].ratio);
    }
    return isBeyond;
}

void AddToFile(const Work& work, const std::string& peer, const Limits& limits, const Result& result) {
    const char* const path = std::getenv("BENCH_ROWS");
    if (path == nullptr) return;
    std::ofstream file(path, std::ios::app);
    file << "{\"what\": " << std::quoted(work.what) << ", \"size\": " << work.size
         << ", \"unit\": " << std::quoted(work.unit) << ", \"ours\": " << result.ours
         << ", \"peer\": " << std::quoted(peer) << ", \"theirs\": " << result.theirs
         << ", \"ratio\": " << result.ratio << ", \"goal\": " << limits.goal << ", \"bar\": " << limits.bar
         << "}\n";
}

void PrintHeading() {
    static bool sPrinted = false;
    if (sPrinted) return;
    sPrinted = true;
    std::printf("%-36s %9s %12s  %-22s %12s %-6s %6s %6s %6s\n", "work", "size", "ours", "beside", "cost",
                "unit", "ratio", "goal", "bar");
}

}  // namespace

void Comparison::Run(const Work& work, const std::function<void()>& ours, const std::vector<Peer>& peers) {
    const std::vector<Contender> contenders = ContendersOf(ours, peers);
    std::vector<Result> results;
    for (int attempt = 0; attempt < cAttempts; ++attempt) {
        if (!Improve(results, Rounds(work.rounds, work.count).Measure(contenders), peers)) break;
    }
    const double scale = ScaleOf(work.unit);
    for (std::size_t i = 0; i < peers.size(); ++i) {
        Report(work, peers[i].name, peers[i].limits, results[i].ours * scale, results[i].theirs * scale,
               results[i].ratio);
    }
}

void Comparison::Report(const Work& work, const std::string& peer, const Limits& limits, double ours,
                        double theirs, double ratio) {
    PrintHeading();
    const std::string size = work.size == 0 ? "" : std::to_string(work.size);
    const bool isBehind = limits.HasGoal() && ratio > limits.goal + cNoise;
    const char* const verdict = IsBeyond(limits, ratio) ? " beyond" : isBehind ? " behind" : "";
    std::printf("%-36s %9s %12.2f  %-22s %12.2f %-6s %6.2f %6.2f %6.2f%s\n", work.what.c_str(), size.c_str(),
                ours, peer.c_str(), theirs, work.unit, ratio, limits.goal, limits.bar, verdict);
    std::fflush(stdout);
    AddToFile(work, peer, limits, {ours, theirs, ratio});
}
