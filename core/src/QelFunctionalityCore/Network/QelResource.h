#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "QelCore/QelCompressedSet.h"
#include "QelFunctionalityCore/Values/QelIPFunctors.h"
#include "QelMessage/QelDerivedParsers.h"
#include "QelMessage/QelRecord.h"

// What an agent allocates, and the pools that it allocates from.  There is one kind so far: IPv4 addresses.

namespace Qel {

enum class QelResourceType : int { none = 0, ip = 1 };

/// The types and their names on the wire; the name of `none` is empty.
extern const std::map<QelResourceType, std::string> IDResourceNameMap;
extern const std::map<std::string, QelResourceType> ResourceNameIDMap;

/// One thing that can be allocated.  Its type is told by its class and doesn't cross the wire.
struct QelResource {
    explicit QelResource(QelResourceType resourceType = QelResourceType::none) : type(resourceType) {}
    QelResource(const QelResource&) = default;
    QelResource& operator=(const QelResource&) = default;
    virtual ~QelResource() = default;

    QelResourceType type;

    using Reader = QelRecordReader<QelResource>;
    using Writer = QelRecordWriter<QelResource>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// One of the things that a pool keeps in ranges, in an element `elementID` as an address.
template <class T, QelResourceType resourceType, T emptyValue, int elementID, int nsID, int typeID>
struct QelRangedResource : QelResource {
    explicit QelRangedResource(T resourceValue = emptyValue) : QelResource(resourceType), value(resourceValue) {}

    T value;

    /// -1 without a value; a text that is no address reads as the empty value.
    using Reader = QelRecordReader<QelRangedResource>;
    using Writer = QelRecordWriter<QelRangedResource>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// An IPv4 address, as a number.
using QelResourceIp = QelRangedResource<unsigned int, QelResourceType::ip, 0U, 1262, 281, 251>;

/// A set of things that can be allocated.
struct QelResourcePool {
    explicit QelResourcePool(QelResourceType resourceType = QelResourceType::none) : type(resourceType) {}
    QelResourcePool(const QelResourcePool&) = default;
    QelResourcePool& operator=(const QelResourcePool&) = default;
    virtual ~QelResourcePool() = default;

    QelResourceType type;

    /// A message that tells no type gives `none`, to derived pools as well.  -1 for a type that nobody knows.
    using Reader = QelRecordReader<QelResourcePool>;
    using Writer = QelRecordWriter<QelResourcePool>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// A pool that keeps what it holds in ranges.  On the wire a range of one value is one element, any other an element
/// with its start and its end.
///
/// The least and the greatest number of the type can't be in a pool.  A range that reaches to one of them, or ends
/// before it starts, fails the reader with -1; a single value that is one of them is taken for an error of this
/// system's own, and ends the process.
template <class T, T emptyValue, class ValueReader, class ValueWriter, int nsID, int typeID>
struct QelRangedPool : QelResourcePool {
    QelRangedPool() : QelResourcePool(QelResourceType::ip) {}

    compressed_set<T, std::vector, std::allocator<range<T>>> ranges;

    /// Elements that are neither a value nor a range are passed over.  What was read before a failure stays.
    using Reader = QelRecordReader<QelRangedPool>;
    using Writer = QelRecordWriter<QelRangedPool>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// A pool of IPv4 addresses, as numbers.
using QelResourceIpPool = QelRangedPool<unsigned int, 0, QelIPReader, QelIPWriter, 281, 250>;

/// What a client asks to be allocated and from where, or was allocated.  Either may be null.
struct QelPoolResourcePair {
    QelPoolResourcePair() = default;
    QelPoolResourcePair(const QelPoolResourcePair&) = default;
    QelPoolResourcePair& operator=(const QelPoolResourcePair&) = default;
    virtual ~QelPoolResourcePair() = default;

    boost::shared_ptr<QelResourcePool> pool;
    boost::shared_ptr<QelResource> resource;

    /// Always 0: what is missing, malformed or of an unknown class stays as it was.
    using Reader = QelRecordReader<QelPoolResourcePair>;
    /// Always 0.
    using Writer = QelRecordWriter<QelPoolResourcePair>;
    using reader_type = Reader;
    using writer_type = Writer;
};

extern template class QelDerivedParserFactory<QelResource>;
extern template class QelDerivedParserFactory<QelResourcePool>;

extern QelDerivedParserFactoryT<QelResource, QelResource> factoryQelResource;
extern QelDerivedParserFactoryT<QelResourceIp, QelResource> factoryQelResourceIp;
extern QelDerivedParserFactoryT<QelResourcePool, QelResourcePool> factoryQelResourcePool;
extern QelDerivedParserFactoryT<QelResourceIpPool, QelResourcePool> factoryQelResourceIpPool;

} // namespace Qel
