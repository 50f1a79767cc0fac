// Compares iteration and filters of vocabularies with a model: plain lists and plain loops.

#include <algorithm>
#include <array>
#include <map>
#include <random>

#include <gmock/gmock.h>

#include "QelFunctionalityCore/Vocabulary/QelVocMap.h"
#include "QelFunctionalityCore/Vocabulary/VocTestSupport.h"

namespace Qel {
namespace {

using namespace Qel::TestSupport;

constexpr int runs = 400;

using Names = std::set<std::string>;
/// Vocabulary and ID of each visited item.
using Visits = std::vector<std::pair<std::string, std::string>>;

class VocModelTest : public testing::Test {
protected:
    // Few words, so that names, versions, IDs and categories often match.
    static constexpr std::array<const char*, 4> names{"net", "base", "agent", "disk"};
    static constexpr std::array<const char*, 3> versions{"1", "2", "10"};
    static constexpr std::array<const char*, 5> words{"a", "b", "c", "d", "e"};

    unsigned below(std::size_t limit) {
        return std::uniform_int_distribution<unsigned>(0, static_cast<unsigned>(limit - 1))(random);
    }
    template <class Words> std::string any(const Words& all) { return all[below(all.size())]; }
    template <class Words> Names some(const Words& all, std::size_t most) {
        Names chosen;
        for (std::size_t left = below(most + 1); left > 0; --left)
            chosen.insert(any(all));
        return chosen;
    }

    std::vector<VocItem> makeItems() {
        std::vector<VocItem> items(below(5));
        for (VocItem& item : items) {
            item.id = any(words);
            for (unsigned left = below(4); left > 0; --left)
                item.categories.push_back(any(words));
        }
        return items;
    }
    void makeVocabularies() {
        vocs.resize(below(7));
        for (Voc& voc : vocs) {
            voc = {any(names), below(6) == 0 ? std::string() : any(versions), makeItems(), makeItems()};
        }
    }
    void makeFilters() {
        loadSet.clear();
        if (below(2) == 0)
            for (const std::string& name : some(names, 3))
                loadSet.insert({name, any(versions)});
    }

    // ---- the model

    /// The vocabularies that pass the load set, in iteration order.
    [[nodiscard]] std::vector<const Voc*> loaded() const {
        std::map<std::pair<std::string, std::string>, const Voc*> byIdentity;
        for (const Voc& voc : vocs)
            if (!voc.version.empty())
                byIdentity[{voc.name, voc.version}] = &voc;
        std::vector<const Voc*> all;
        for (const auto& [identity, voc] : byIdentity) {
            const bool isLoaded = std::any_of(loadSet.begin(), loadSet.end(), [&wanted = identity](const QelVocID& id) {
                return id.name == wanted.first && id.version == wanted.second;
            });
            if (loadSet.empty() || isLoaded)
                all.push_back(voc);
        }
        return all;
    }
    [[nodiscard]] std::vector<const Voc*> visible() const {
        std::vector<const Voc*> all = loaded();
        std::erase_if(all, [&](const Voc* voc) { return !restriction.empty() && !restriction.contains(voc->name); });
        return all;
    }
    /// Sets the restriction, and returns the result expected from setRestrictVocSet().
    int restrict(const Names& wanted) {
        Names result;
        for (const std::string& name : wanted) {
            const bool isInLoadSet =
                std::any_of(loadSet.begin(), loadSet.end(), [&](const QelVocID& id) { return id.name == name; });
            const auto all = loaded();
            const bool exists = std::any_of(all.begin(), all.end(), [&](const Voc* voc) { return voc->name == name; });
            if (!loadSet.empty() && !isInLoadSet)
                return -1;
            if (loadSet.empty() && all.empty())
                return -1;
            if (loadSet.empty() ? exists : isInLoadSet)
                result.insert(name);
        }
        restriction = result;
        return 0;
    }
    static bool belongs(const VocItem& item, const Names& categories) {
        return std::all_of(categories.begin(), categories.end(), [&](const std::string& category) {
            return std::find(item.categories.begin(), item.categories.end(), category) != item.categories.end();
        });
    }
    static std::vector<VocItem> parametersOf(const Voc& voc) {
        std::vector<VocItem> all{{"vocversion"}};
        all.insert(all.end(), voc.parameters.begin(), voc.parameters.end());
        return all;
    }
    static std::vector<VocItem> categoriesOf(const Voc& voc) { return voc.categories; }

    template <class Items> Visits visit(const Items& itemsOf, const Names& categories) const {
        Visits visited;
        for (const Voc* voc : visible())
            for (const VocItem& item : itemsOf(*voc))
                if (belongs(item, categories))
                    visited.emplace_back(voc->name + ' ' + voc->version, item.id);
        return visited;
    }
    /// The vocabulary where a seek succeeds; empty if it fails.
    template <class Items>
    std::string seek(const Items& itemsOf, const std::string& id, const Names& categories) const {
        for (const Voc* voc : visible()) {
            const std::vector<VocItem> items = itemsOf(*voc);
            const auto first =
                std::find_if(items.begin(), items.end(), [&](const VocItem& item) { return item.id == id; });
            if (first != items.end() && belongs(*first, categories))
                return voc->name + ' ' + voc->version;
        }
        return {};
    }

    // ---- the map

    static Visits visitMap(const QelVocMapIterator& at, const Names& categories, bool parameters) {
        const auto step = [&](bool first) {
            return parameters ? at.processParameter(categories, first) : at.processCategory(categories, first);
        };
        Visits visited;
        for (int result = step(true); result == 0; result = step(false))
            visited.emplace_back(TestSupport::textOf(at.getVocID()), idOf(at));
        return visited;
    }

    std::mt19937 random{20261121};
    std::vector<Voc> vocs;
    QelVocIDSet loadSet;
    Names restriction;
};

TEST_F(VocModelTest, IterationSeeksAndFiltersMatchModel) {
    std::size_t visited = 0;
    std::size_t found = 0;
    for (int run = 0; run < runs && !HasFailure(); ++run) {
        makeVocabularies();
        makeFilters();
        restriction.clear();
        QelVocMap map(makeMap(vocs), loadSet);
        for (int step = 0; step < 6; ++step) {
            SCOPED_TRACE("run " + std::to_string(run) + ", step " + std::to_string(step));
            const Names wanted = some(names, 2);
            ASSERT_EQ(map.setRestrictVocSet(wanted), restrict(wanted));

            const std::unique_ptr<QelVocMapIterator> at(map.read());
            std::vector<std::string> identities;
            for (const Voc* voc : visible())
                identities.push_back(voc->name + ' ' + voc->version);
            EXPECT_EQ(vocabulariesOf(*at), identities);

            const Names categories = some(words, 2);
            const Visits parameters = visit(parametersOf, categories);
            visited += parameters.size();
            EXPECT_EQ(visitMap(*at, categories, true), parameters);
            EXPECT_EQ(visitMap(*at, categories, false), visit(categoriesOf, categories));

            at->setRestrictSet(categories);
            for (const char* const id : words) {
                const std::string parameterIn = seek(parametersOf, id, categories);
                const std::string categoryIn = seek(categoriesOf, id, categories);
                found += parameterIn.empty() ? 0U : 1U;
                EXPECT_EQ(at->seekParameter(id) == 0 ? TestSupport::textOf(at->getVocID()) : "", parameterIn) << id;
                EXPECT_EQ(at->seekCategory(id) == 0 ? TestSupport::textOf(at->getVocID()) : "", categoryIn) << id;
                EXPECT_EQ(map.isFeatureEnabled(id), !seek(parametersOf, id, {}).empty()) << id;
            }
        }
    }
    EXPECT_GT(visited, 1000U) << "random vocabularies and filters must match often enough";
    EXPECT_GT(found, 1000U);
}

TEST_F(VocModelTest, InsertAndEraseMatchModel) {
    std::size_t rejected = 0;
    for (int run = 0; run < runs && !HasFailure(); ++run) {
        makeVocabularies();
        QelVocMap map(makeMap({}));
        std::vector<Voc> model;
        for (const Voc& voc : vocs) {
            const auto same = std::find_if(model.begin(), model.end(), [&](const Voc& each) {
                return each.name == voc.name && each.version == voc.version;
            });
            const TestMessage source(makeMap({voc}));
            source.cursor().firstChild(1871);
            EXPECT_EQ(QelVocMap::insert(map.getMessage(), &source.cursor()), voc.version.empty() ? -1 : 0);
            rejected += voc.version.empty() ? 1U : 0U;
            if (!voc.version.empty() && same == model.end())
                model.push_back(voc);
            if (below(4) != 0)
                continue;
            const QelVocID victim{any(names), any(versions)};
            const auto gone = std::erase_if(
                model, [&](const Voc& each) { return victim.name == each.name && victim.version == each.version; });
            EXPECT_EQ(map.erase(victim), gone == 1 ? 0 : -1);
        }
        EXPECT_EQ(binaryOf(*map.getMessage()), binaryOf(*TestMessage(makeMap(model)).get())) << "run " << run;
    }
    EXPECT_GT(rejected, 100U);
}

} // namespace
} // namespace Qel
