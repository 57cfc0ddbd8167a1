#include <velmora/rules/IPDescription.h>

#include <benchmark/benchmark.h>

#include <sstream>
#include <string>
#include <vector>

// Parsing description files, beside taking the same files apart into lines and words with the standard library's
// streams.

namespace {

/// A description as the catalogue holds them, with that many variants.
std::string makeDescription(int variantCount) {
    std::string content = "name APB slave to serial master\ncategory Interface/Serial\nuid APBSLAVE01\ncompany Orvane\n"
                          "script generator.py\nhtml index.html\nvariants";
    for (int number = 0; number < variantCount; ++number)
        content += " FAMILY" + std::to_string(number);
    return content + "\n";
}

void parse(benchmark::State& state) {
    const std::string content = makeDescription(static_cast<int>(state.range(0)));
    const std::string filename = "/prefix/share/velmora/Orvane/bridge/config";
    for (auto _ : state)
        benchmark::DoNotOptimize(Velmora::parseIPDescription(content, filename));
    state.SetBytesProcessed(static_cast<std::int64_t>(content.size()) * state.iterations());
}

void splitWithStreams(benchmark::State& state) {
    const std::string content = makeDescription(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        std::vector<std::string> words;
        std::istringstream lines(content);
        for (std::string line; std::getline(lines, line);) {
            std::istringstream stream(line);
            for (std::string word; stream >> word;)
                words.push_back(word);
        }
        benchmark::DoNotOptimize(words);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(content.size()) * state.iterations());
}

BENCHMARK(parse)->Name("description/parse")->ArgName("variants")->Arg(3)->Arg(1000);
BENCHMARK(splitWithStreams)->Name("description/split with streams")->ArgName("variants")->Arg(3)->Arg(1000);

} // namespace

BENCHMARK_MAIN();
