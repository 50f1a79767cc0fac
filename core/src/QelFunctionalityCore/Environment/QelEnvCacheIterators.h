#pragma once

#include <utility>

#include <boost/iterator/filter_iterator.hpp>
#include <boost/iterator/iterator_facade.hpp>
#include <boost/iterator/transform_iterator.hpp>

#include "QelFunctionalityCore/Environment/QelEnvCache.h"

namespace Qel::Cache::Iterator {

/// Iterates over all environments of a list.  The pointer it yields is null for a record without data, and valid until
/// the iterator moves.
class Flat : public boost::iterator_facade<Flat, const QelEnv, boost::forward_traversal_tag, const QelEnv*> {
public:
    Flat() = default;
    explicit Flat(const QelEnvCache::EnvValuesList::const_iterator& at) : m_at(at) {}

private:
    friend class boost::iterator_core_access;

    void increment() { ++m_at; }
    [[nodiscard]] bool equal(const Flat& other) const { return m_at == other.m_at; }
    [[nodiscard]] const QelEnv* dereference() const { return m_at.operator->().get(); }

    QelEnvCache::EnvValuesList::const_iterator m_at;
};

namespace Children {

/// The children of one environment, sorted by EID.
class Data {
public:
    /// Predicate that selects the children of one environment.
    class isChild {
    public:
        isChild() = default;
        explicit isChild(const QelEID& parent) : m_parent(parent) {}
        bool operator()(const QelEnv* env) const { return env && m_parent == env->getParentEID(); }

    private:
        QelEID m_parent;
    };
    using iterator = boost::filter_iterator<isChild, Flat>;

    /// Uses a list of the process's cache; empty if there is none.
    explicit Data(const QelEID& parent) : Data(parent, processList()) {}
    /// Uses a given list, which may be null.
    Data(const QelEID& parent, QelEnvCache::EnvValuesListPtr list) : m_parent(parent), m_list(std::move(list)) {}

    [[nodiscard]] iterator begin() const {
        return m_list ? iterator(isChild(m_parent), Flat(m_list->begin()), Flat(m_list->end())) : dead();
    }
    [[nodiscard]] iterator end() const {
        return m_list ? iterator(isChild(m_parent), Flat(m_list->end()), Flat(m_list->end())) : dead();
    }

private:
    static QelEnvCache::EnvValuesListPtr processList() {
        const QelEnvCacheSP cache = envCache();
        return cache ? cache->getEnvList() : nullptr;
    }
    [[nodiscard]] iterator dead() const { return iterator(isChild(m_parent), Flat(), Flat()); }

    QelEID m_parent;
    QelEnvCache::EnvValuesListPtr m_list;
};

/// The EIDs of the children of one environment.
class Keys {
public:
    struct GetEID {
        const QelEID& operator()(const QelEnv* env) const { return env->getEID(); }
    };
    using iterator = boost::transform_iterator<GetEID, Data::iterator>;

    explicit Keys(const QelEID& parent) : m_data(parent) {}
    Keys(const QelEID& parent, QelEnvCache::EnvValuesListPtr list) : m_data(parent, std::move(list)) {}

    [[nodiscard]] iterator begin() const { return iterator(m_data.begin(), GetEID()); }
    [[nodiscard]] iterator end() const { return iterator(m_data.end(), GetEID()); }

private:
    Data m_data;
};

} // namespace Children

} // namespace Qel::Cache::Iterator
