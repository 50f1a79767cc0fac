#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "QelCommon/Export.h"
#include "QelCore/QelCompressedSet.h"
#include "QelFunctionalityCore/Values/QelIPFunctors.h"
#include "QelMessage/QelDerivedParsers.h"
#include "QelMessage/QelRecord.h"

// Resources that an agent allocates, and the pools that it allocates from.  IPv4 addresses are the only kind.

namespace Qel {

enum class QelResourceType : int { none = 0, ip = 1 };

/// Maps between the types and their names on the wire; the name of `none` is empty.
QEL_EXPORT extern const std::map<QelResourceType, std::string> IDResourceNameMap;
QEL_EXPORT extern const std::map<std::string, QelResourceType> ResourceNameIDMap;

/// A single allocatable resource.  Its class determines `type`, which is not sent.
struct QEL_EXPORT QelResource : QelRecord<QelResource> {
    explicit QelResource(QelResourceType resourceType = QelResourceType::none) : type(resourceType) {}
    QelResource(const QelResource&) = default;
    QelResource& operator=(const QelResource&) = default;
    virtual ~QelResource() = default;

    QelResourceType type;

    static const QelWireLayout& wire;
};

/// A single value of a ranged pool, sent as an address in element `elementID`.
template <class T, QelResourceType resourceType, T emptyValue, int elementID, int nsID, int typeID>
struct QelRangedResource
    : QelRecord<QelRangedResource<T, resourceType, emptyValue, elementID, nsID, typeID>, QelResource> {
    explicit QelRangedResource(T resourceValue = emptyValue)
        : QelRangedResource::QelRecord(resourceType), value(resourceValue) {}

    T value;

    /// Reader: returns -1 if the value is missing; a malformed address reads as `emptyValue`.
    static const QelWireLayout& wire;
};

/// An IPv4 address, as a number.
using QelResourceIp = QelRangedResource<unsigned int, QelResourceType::ip, 0U, 1262, 281, 251>;

/// A set of allocatable resources.
struct QEL_EXPORT QelResourcePool : QelRecord<QelResourcePool> {
    explicit QelResourcePool(QelResourceType resourceType = QelResourceType::none) : type(resourceType) {}
    QelResourcePool(const QelResourcePool&) = default;
    QelResourcePool& operator=(const QelResourcePool&) = default;
    virtual ~QelResourcePool() = default;

    QelResourceType type;

    /// Reader: without a type in the message, `type` becomes `none`, in derived pools as well.  Returns -1 for an
    /// unknown type.
    static const QelWireLayout& wire;
};

/// A pool that stores its resources as ranges.  On the wire, a range of one value is a single element; any other is an
/// element with start and end.
///
/// The minimum and the maximum of `T` cannot be in a pool.  The reader returns -1 for a range that includes one of them
/// or ends before it starts.  A single value equal to one of them is treated as an internal error and terminates the
/// process.
template <class T, T emptyValue, class ValueReader, class ValueWriter, int nsID, int typeID>
struct QelRangedPool
    : QelRecord<QelRangedPool<T, emptyValue, ValueReader, ValueWriter, nsID, typeID>, QelResourcePool> {
    QelRangedPool() : QelRangedPool::QelRecord(QelResourceType::ip) {}

    compressed_set<T, std::vector, std::allocator<range<T>>> ranges;

    /// Reader: ignores elements that are neither a value nor a range.  Elements read before a failure are kept.
    static const QelWireLayout& wire;
};

/// A pool of IPv4 addresses, as numbers.
using QelResourceIpPool = QelRangedPool<unsigned int, 0, QelIPReader, QelIPWriter, 281, 250>;

/// A requested or completed allocation: the resource, and the pool that it comes from.  Either may be null.
struct QEL_EXPORT QelPoolResourcePair : QelRecord<QelPoolResourcePair> {
    QelPoolResourcePair() = default;
    QelPoolResourcePair(const QelPoolResourcePair&) = default;
    QelPoolResourcePair& operator=(const QelPoolResourcePair&) = default;
    virtual ~QelPoolResourcePair() = default;

    boost::shared_ptr<QelResourcePool> pool;
    boost::shared_ptr<QelResource> resource;

    /// Reader: always returns 0: a missing or malformed member, or one of an unknown class, is left unchanged.
    /// Writer: always returns 0.
    static const QelWireLayout& wire;
};

template <> QEL_EXPORT const QelWireLayout& QelResourceIp::wire;
template <> QEL_EXPORT const QelWireLayout& QelResourceIpPool::wire;

extern template class QelDerivedParserFactory<QelResource>;
extern template class QelDerivedParserFactory<QelResourcePool>;

QEL_EXPORT extern QelDerivedParserFactoryT<QelResource, QelResource> factoryQelResource;
QEL_EXPORT extern QelDerivedParserFactoryT<QelResourceIp, QelResource> factoryQelResourceIp;
QEL_EXPORT extern QelDerivedParserFactoryT<QelResourcePool, QelResourcePool> factoryQelResourcePool;
QEL_EXPORT extern QelDerivedParserFactoryT<QelResourceIpPool, QelResourcePool> factoryQelResourceIpPool;

} // namespace Qel
