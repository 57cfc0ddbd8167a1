// Collection views against std::ranges views over the same list. Each pair walks all elements and adds them up, the
// view being made anew for each walk, as the program does. The argument is the number of elements.

#include <Brindle/collections/Collections.h>

#include <benchmark/benchmark.h>

#include <functional>
#include <list>
#include <map>
#include <ranges>
#include <set>
#include <string>
#include <utility>

namespace {

constexpr unsigned long partsPerBlock = 4;

class Block {
public:
    explicit Block(unsigned long number) : _number(number), _family("family " + std::to_string(number % 20)) {
        for (unsigned long part = 0; part < partsPerBlock; ++part)
            _parts.push_back(number + part);
    }

    unsigned long getNumber() const { return _number; }
    const std::string& getFamily() const { return _family; }
    const std::list<unsigned long>& getPartList() const { return _parts; }
    Brindle::Collection<unsigned long> getParts() const { return Brindle::ListCollection(_parts); }
    bool isOfParity(unsigned long parity) const { return _number % 2 == parity; }

private:
    unsigned long _number;
    std::string _family;
    std::list<unsigned long> _parts;
};

using List = std::list<const Block*>;

/// So many blocks on the heap, as a program makes them, the same at each call.
const List& getBlocks(unsigned long count) {
    static std::map<unsigned long, std::pair<std::list<Block>, List>> made;
    auto& [blocks, pointers] = made[count];
    while (blocks.size() < count)
        pointers.push_back(&blocks.emplace_back(blocks.size()));
    return pointers;
}

unsigned long measured(unsigned long number) {
    return number;
}
unsigned long measured(const std::string& text) {
    return text.size();
}
unsigned long measured(const Block* block) {
    return block->getNumber();
}

/// Walks over what `makeView` makes of the list.
void walk(benchmark::State& state, auto makeView) {
    const List& blocks = getBlocks(static_cast<unsigned long>(state.range(0)));
    for ([[maybe_unused]] auto _ : state) {
        unsigned long sum = 0;
        for (auto&& element : makeView(blocks))
            sum += measured(element);
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

const auto isOdd = [](const Block* block) { return block->isOfParity(1); };

auto listView(const List& list) {
    return Brindle::ListCollection(list);
}
auto listRange(const List& list) {
    return std::views::all(list);
}
auto subsetView(const List& list) {
    return subset(listView(list), &Block::isOfParity, 1);
}
auto subsetRange(const List& list) {
    return list | std::views::filter(isOdd);
}
auto associatesView(const List& list) {
    return associates(listView(list), &Block::getNumber);
}
auto associatesRange(const List& list) {
    return list | std::views::transform(&Block::getNumber);
}
auto flattenView(const List& list) {
    return flatten(associates(listView(list), &Block::getParts));
}
auto flattenRange(const List& list) {
    return list | std::views::transform(&Block::getPartList) | std::views::join;
}
auto reduceView(const List& list) {
    return reduce(associates(listView(list), &Block::getFamily));
}
auto reduceRange(const List& list) {
    return list | std::views::transform(&Block::getFamily) |
           std::views::filter([met = std::set<std::string>()](const std::string& family) mutable {
               return met.insert(family).second;
           });
}

void compare(const std::string& name, auto makeView, auto makeRange) {
    for (const auto& [kind, run] : {std::pair<std::string, std::function<void(benchmark::State&)>>(
                                        "/Brindle", [makeView](benchmark::State& state) { walk(state, makeView); }),
                                    {"/ranges", [makeRange](benchmark::State& state) { walk(state, makeRange); }}})
        benchmark::RegisterBenchmark((name + kind).c_str(), run)->Arg(9)->Arg(1000)->Arg(100000);
}

} // namespace

int main(int argc, char** argv) {
    compare("list", listView, listRange);
    compare("subset", subsetView, subsetRange);
    compare("associates", associatesView, associatesRange);
    compare("flatten", flattenView, flattenRange);
    compare("reduce", reduceView, reduceRange);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
