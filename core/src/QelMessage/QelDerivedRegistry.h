#pragma once

#include <algorithm>

#include "QelMessage/QelDerivedParsers.h"

// Definition of the registry of one base class.  Exactly one source file of the library or plug-in that owns the base
// class includes this header, and instantiates the registry:
//
//     template class QelDerivedParserFactory<QelNetDevice>;
//
// A program that uses a registry without a definition does not link.

namespace Qel {

// Not inline: `extern template` has no effect on an inline function.
template <class Base, class Key>
auto QelDerivedParserFactory<Base, Key>::factoryInternalData() -> const boost::shared_ptr<FactoryData>& {
    static const boost::shared_ptr<FactoryData> registry(new FactoryData);
    return registry;
}

template <class Base, class Key> QelDerivedParserFactory<Base, Key>::~QelDerivedParserFactory() {
    if (!m_data)
        return;
    if (m_data->defaultFactory == this)
        m_data->defaultFactory = nullptr;
    const QelIsFactoryEqual<QelDerivedParserFactory> isThis(this);
    for (auto* registry : {&m_data->factories, &m_data->factoriesByType})
        if (const auto entry = std::find_if(registry->begin(), registry->end(), isThis); entry != registry->end())
            registry->erase(entry);
}

template <class Base, class Key>
void QelDerivedParserFactory<Base, Key>::registerAs(bool isDefault, const std::string& key, const char* typeName) {
    m_data = factoryInternalData();
    const bool isNewKey = m_data->factories.emplace(key, this).second;
    QEL_CHECK_AT(isNewKey, "core/src/QelMessage/QelDerivedParsers", 269);
    const bool isNewType = m_data->factoriesByType.emplace(typeName, this).second;
    QEL_CHECK_AT(isNewType, "core/src/QelMessage/QelDerivedParsers", 271);
    if (isDefault) {
        QEL_CHECK_AT(m_data->defaultFactory == nullptr, "core/src/QelMessage/QelDerivedParsers", 274);
        m_data->defaultFactory = this;
    }
}

} // namespace Qel
