#include <map>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include "QelFunctionalityCore/Profile/QelProfile.h"
#include "QelFunctionalityCore/TestTree.h"

// Compares the set algebra of profiles with a model based on maps.

namespace Qel {

namespace {

constexpr int sidID = 1911;
constexpr int authNameID = 1630;
constexpr int personalID = 2187;
constexpr int interfaceID = 2184;
constexpr int browseID = 2185;
constexpr int desktopID = 2186;
constexpr int screenID = 2188;

using Texts = std::map<int, std::string>;
using Items = std::map<std::string, int>;

/// Reference model of a profile, keyed by the elements of its specified members.
struct Model {
    Texts owner;                ///< SID and name
    Texts sections;             ///< sections without items, each represented by one string
    std::map<int, Items> lists; ///< browse lists and screens, each item represented by a number

    friend bool operator==(const Model&, const Model&) = default;

    [[nodiscard]] bool isEmpty() const { return sections.empty() && lists.empty(); }
    void drop(int id) {
        sections.erase(id);
        lists.erase(id);
    }
};

void showValue(const Model& model, std::ostream& out) {
    out << "owner ";
    rc::show(model.owner, out);
    out << ", sections ";
    rc::show(model.sections, out);
    out << ", lists ";
    rc::show(model.lists, out);
}

// --- Conversion between model and profile

QelProfile toProfile(const Model& model) {
    QelProfile profile;
    for (const auto& [id, text] : model.owner) {
        if (id == sidID) {
            profile.sid = QelSID("S-1-5-" + text);
        } else {
            profile.authName = QelAuthName();
            profile.authName.get().name = text;
        }
    }
    for (const auto& [id, text] : model.sections) {
        switch (id) {
        case personalID:
            profile.personal = QelPersonalSettings();
            profile.personal.get().personalName = text;
            break;
        case interfaceID:
            profile.interface = QelInterfaceSettings();
            profile.interface.get().option2198 = text;
            break;
        default:
            profile.desktop = QelDesktopSettings();
            profile.desktop.get().option2208 = text;
        }
    }
    for (const auto& [id, items] : model.lists) {
        if (id == browseID)
            profile.browse.specify(true);
        else
            profile.screen.specify(true);
        for (const auto& [name, number] : items) {
            if (id == browseID) {
                QelBrowseInfo info(name);
                info.value2210 = number;
                profile.browse.get().items.insert(info);
            } else {
                QelScreenInfo info;
                info.name = name;
                info.sections.resize(1);
                info.sections.front().order = number;
                profile.screen.get().items.insert(info);
            }
        }
    }
    return profile;
}

Model toModel(const QelProfile& profile) {
    Model model;
    if (profile.sid.isSpecified())
        model.owner[sidID] = profile.sid->toString().substr(std::string("S-1-5-").size());
    if (profile.authName.isSpecified())
        model.owner[authNameID] = profile.authName->name.get();
    if (profile.personal.isSpecified())
        model.sections[personalID] = profile.personal->personalName;
    if (profile.interface.isSpecified())
        model.sections[interfaceID] = profile.interface->option2198;
    if (profile.desktop.isSpecified())
        model.sections[desktopID] = profile.desktop->option2208;
    if (profile.browse.isSpecified()) {
        Items& items = model.lists[browseID];
        for (const QelBrowseInfo& info : profile.browse->items)
            items[info.name] = info.value2210;
    }
    if (profile.screen.isSpecified()) {
        Items& items = model.lists[screenID];
        for (const QelScreenInfo& info : profile.screen->items)
            items[info.name] = info.sections.empty() ? 0 : info.sections.front().order;
    }
    return model;
}

// --- Operations of the model

/// The content of a message with the profile: a SID hides the name.
Model sent(Model model) {
    if (model.owner.contains(sidID))
        model.owner.erase(authNameID);
    return model;
}

Model merged(Model model, const Model& other) {
    model.owner.insert(other.owner.begin(), other.owner.end());
    for (const auto& [id, text] : other.sections)
        model.sections[id] = text;
    for (const auto& [id, items] : other.lists) {
        Items& here = model.lists[id];
        for (const auto& [name, number] : items)
            here[name] = number;
    }
    return model;
}

/// A filter, and the browse lists that it retains although the section is unspecified.
struct Filter {
    Model profile;
    Items retained;

    /// The names used to select browse lists.
    [[nodiscard]] const Items& names() const {
        const auto found = profile.lists.find(browseID);
        return found == profile.lists.end() ? retained : found->second;
    }
};

void showValue(const Filter& filter, std::ostream& out) {
    showValue(filter.profile, out);
    out << ", retained ";
    rc::show(filter.retained, out);
}

QelProfile toProfile(const Filter& filter) {
    QelProfile profile = toProfile(filter.profile);
    if (!profile.browse.isSpecified())
        for (const auto& [name, number] : filter.retained)
            profile.browse.get().items.insert(QelBrowseInfo(name));
    return profile;
}

struct Selection {
    Model model;
    bool isCursorLost = false; ///< left in the element of the browse lists
};

Selection selected(const Model& stored, const Filter& filter, QelFilterMode mode) {
    const Model message = sent(stored);
    if (filter.profile.isEmpty())
        return {message};
    const bool isIntersection = mode == QelFilterMode::intersection;
    Selection selection{message};
    selection.model.owner.clear();
    std::erase_if(selection.model.sections, [&](const auto& section) {
        return filter.profile.sections.contains(section.first) != isIntersection;
    });
    std::erase_if(selection.model.lists,
                  [&](const auto& section) { return filter.profile.lists.contains(section.first) != isIntersection; });

    const auto browse = selection.model.lists.find(browseID);
    if (browse == selection.model.lists.end() || browse->second.empty() || filter.names().empty())
        return selection;
    std::erase_if(browse->second,
                  [&](const auto& item) { return filter.names().contains(item.first) != isIntersection; });
    selection.model.drop(desktopID);
    selection.model.drop(screenID);
    selection.isCursorLost = true;
    return selection;
}

/// A filter after a round trip.
Model roundTripped(const Model& filter) {
    Model model = sent(filter);
    for (auto& [id, text] : model.sections)
        text.clear();
    for (auto& [id, items] : model.lists)
        items.clear();
    if (model.lists.contains(browseID)) {
        model.drop(desktopID);
        model.drop(screenID);
    }
    return model;
}

// --- Generators

/// Uses the nominal size from the first example on; the values are small anyway.
template <class T> rc::Gen<T> inFullSize(const rc::Gen<T>& generator) {
    return rc::gen::resize(rc::kNominalSize, generator);
}

/// A map with at most one entry per key.
template <class Map>
rc::Gen<Map> mapFrom(const std::vector<typename Map::key_type>& keys,
                     const rc::Gen<typename Map::mapped_type>& values) {
    using Entry = std::pair<typename Map::key_type, typename Map::mapped_type>;
    const auto entries = rc::gen::mapcat(rc::gen::inRange<std::size_t>(0, keys.size() + 1), [=](std::size_t count) {
        return rc::gen::container<std::vector<Entry>>(count, rc::gen::pair(rc::gen::elementOf(keys), values));
    });
    return rc::gen::map(entries, [](const std::vector<Entry>& made) { return Map(made.begin(), made.end()); });
}

rc::Gen<Items> someItems() {
    return mapFrom<Items>({"a", "b", "c", "d"}, rc::gen::inRange(0, 100));
}

rc::Gen<Model> someModel() {
    const auto texts = rc::gen::element<std::string>("1", "2", "3");
    return inFullSize(rc::gen::build<Model>(
        rc::gen::set(&Model::owner, mapFrom<Texts>({sidID, authNameID}, texts)),
        rc::gen::set(&Model::sections, mapFrom<Texts>({personalID, interfaceID, desktopID}, texts)),
        rc::gen::set(&Model::lists, mapFrom<std::map<int, Items>>({browseID, screenID}, someItems()))));
}

rc::Gen<Filter> someFilter() {
    return inFullSize(rc::gen::build<Filter>(rc::gen::set(&Filter::profile, someModel()),
                                             rc::gen::set(&Filter::retained, someItems())));
}

} // namespace

} // namespace Qel

template <> struct rc::Arbitrary<Qel::Model> {
    static Gen<Qel::Model> arbitrary() { return Qel::someModel(); }
};
template <> struct rc::Arbitrary<Qel::Filter> {
    static Gen<Qel::Filter> arbitrary() { return Qel::someFilter(); }
};

namespace Qel {

namespace {

constexpr int profileID = 1307;

/// Writes a profile and moves the cursor into its element.
template <class Writer> void put(TestTree& tree, const QelProfile& profile, const Writer& writer) {
    tree->newChild(profileID);
    RC_ASSERT(tree->putObject(profile, writer, 0) == 0);
    tree->seekRoot();
    RC_ASSERT(tree->seek(profileID) == 0);
}

RC_GTEST_PROP(ProfileModelTest, RoundTripsProfile, (const Model& model)) {
    TestTree tree;
    put(tree, toProfile(model), QelProfile::Writer());
    QelProfile read;
    RC_ASSERT(tree->getObj(read, 0) == 0);
    RC_ASSERT(toModel(read) == sent(model));
    RC_ASSERT(tree->curID() == profileID);
}

RC_GTEST_PROP(ProfileModelTest, MergeMatchesModel, (const Model& here, const Model& other)) {
    QelProfile profile = toProfile(here);
    const QelProfile laidOver = toProfile(other);
    RC_ASSERT(profile.merge(laidOver) == 0);
    RC_ASSERT(toModel(profile) == merged(here, other));
    RC_ASSERT(toModel(laidOver) == other);
}

void checkSelection(const Model& stored, const Filter& filter, QelFilterMode mode) {
    TestTree tree;
    put(tree, toProfile(stored), QelProfile::Writer());
    const auto filterProfile = boost::make_shared<QelProfile>(toProfile(filter));
    const Selection expected = selected(stored, filter, mode);

    QelProfile read;
    const int result = mode == QelFilterMode::difference
                           ? tree->getObject(read, QelProfile::differenceReader(filterProfile), 0)
                           : tree->getObject(read, QelProfile::intersectionReader(filterProfile), 0);
    RC_ASSERT(result == 0);
    RC_ASSERT(toModel(read) == expected.model);
    RC_ASSERT(tree->curID() == (expected.isCursorLost ? browseID : profileID));
}

RC_GTEST_PROP(ProfileModelTest, DifferenceMatchesModel, (const Model& stored, const Filter& filter)) {
    checkSelection(stored, filter, QelFilterMode::difference);
}

RC_GTEST_PROP(ProfileModelTest, IntersectionMatchesModel, (const Model& stored, const Filter& filter)) {
    checkSelection(stored, filter, QelFilterMode::intersection);
}

RC_GTEST_PROP(ProfileModelTest, RoundTripsSectionsOfFilter, (const Model& filter)) {
    TestTree tree;
    put(tree, toProfile(filter), QelProfile::filterWriter());
    QelProfile read;
    RC_ASSERT(tree->getObject(read, QelProfile::filterReader(), 0) == 0);
    RC_ASSERT(toModel(read) == roundTripped(filter));
    RC_ASSERT(tree->curID() == profileID);
}

RC_GTEST_PROP(ProfileModelTest, DifferenceAndIntersectionAddUpToProfile, (const Model& stored, const Model& filter)) {
    const Filter bySections{roundTripped(filter), {}};
    TestTree tree;
    put(tree, toProfile(stored), QelProfile::Writer());
    const auto filterProfile = boost::make_shared<QelProfile>(toProfile(bySections));
    QelProfile whole;
    QelProfile rest;
    RC_ASSERT(tree->getObject(whole, QelProfile::intersectionReader(filterProfile), 0) == 0);
    RC_ASSERT(tree->getObject(rest, QelProfile::differenceReader(filterProfile), 0) == 0);
    whole.merge(rest);
    Model expected = sent(stored);
    if (!bySections.profile.isEmpty())
        expected.owner.clear();
    RC_ASSERT(toModel(whole) == expected);
}

} // namespace

} // namespace Qel
