#pragma once

#include <string>
#include <vector>

#include "QelFunctionalityCore/Profile/QelProfile.h"

namespace Qel {

inline QelBrowseInfo browseInfo(const std::string& name, int value = 0) {
    QelBrowseInfo info(name);
    info.value2210 = value;
    return info;
}

inline QelScreenInfo screenInfo(const std::string& name) {
    QelScreenInfo info;
    info.name = name;
    return info;
}

/// Settings with lists or screens of these names.
template <class Settings> Settings settingsOf(const std::vector<std::string>& names) {
    Settings settings;
    for (const std::string& name : names) {
        typename Settings::Item item;
        item.name = name;
        settings.items.insert(item);
    }
    return settings;
}

inline QelPersonalSettings personalSettings(const std::string& name) {
    QelPersonalSettings settings;
    settings.personalName = name;
    return settings;
}

/// A profile with a SID and all sections, with two lists and two screens.
inline QelProfile fullProfile() {
    QelProfile profile{QelSID("S-1-5-42")};
    profile.personal = personalSettings("Ann");
    profile.interface = QelInterfaceSettings();
    profile.browse = settingsOf<QelBrowseSettings>({"a", "b"});
    profile.desktop = QelDesktopSettings();
    profile.screen = settingsOf<QelScreenSettings>({"s", "t"});
    return profile;
}

/// Returns the names of a section's items in order.
template <class Settings> std::vector<std::string> namesOf(const Settings& settings) {
    std::vector<std::string> names;
    for (const auto& item : settings.items)
        names.push_back(item.name);
    return names;
}

/// Returns the element IDs of the specified sections in writing order.
inline std::vector<int> sectionsOf(const QelProfile& profile) {
    std::vector<int> sections;
    const auto add = [&](const auto& section, int id) {
        if (section.isSpecified())
            sections.push_back(id);
    };
    add(profile.personal, 2187);
    add(profile.interface, 2184);
    add(profile.browse, 2185);
    add(profile.desktop, 2186);
    add(profile.screen, 2188);
    return sections;
}

} // namespace Qel
