#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "QelFunctionalityCore/QelRecordTypes.h"
#include "QelMessage/QelMessageIterator.h"
#include "QelMessage/QelWireLayout.h"
#include "support/RandomFamily.h"

namespace Qel::TestSupport {

/// Fills elements with random records: required fields always, others at random. Constraints that are not in the
/// record's table come from the families.
class RandomRecord {
public:
    /// `families` must outlive this object.
    RandomRecord(unsigned seed, const RandomFamily& families) : m_random(seed), m_families(families) {}

    /// Whether records of this type can be generated.
    [[nodiscard]] bool knows(std::string_view typeName, const QelWireLayout* layout) const {
        return layout || m_families.withoutTable.contains(std::string(typeName));
    }

    /// Fills the current element.
    void fill(QelMessageIterator& cursor, std::string_view typeName, const QelWireLayout* layout) {
        const std::string name(typeName);
        if (const auto custom = m_families.withoutTable.find(name);
            !layout && custom != m_families.withoutTable.end()) {
            custom->second(*this, cursor);
            return;
        }
        if (const auto custom = m_families.replacesTable.find(name); custom != m_families.replacesTable.end()) {
            custom->second(*this, cursor);
            return;
        }
        // A field whose record has handwritten functors does not refer to the record's table.
        if (!layout)
            layout = findRecordType(typeName)->layout;
        for (const QelWireField& field : layout->fields)
            if (field.read == QelWireRead::required || below(3) != 0)
                putField(cursor, *layout, field);
    }

    /// Damages a random descendant of the current element: removes it, duplicates it, changes its value or adds an
    /// unexpected child.
    void damage(QelMessageIterator& cursor) {
        const int depthOfTarget = descend(cursor);
        if (depthOfTarget == 0)
            return;
        const std::unique_ptr<QelMessageIterator> target(cursor.newIterator(false));
        for (int level = 0; level < depthOfTarget; ++level)
            cursor.seekUp();
        static constexpr std::array<const char*, 5> oddValues{"", "text", "-1", "99999999999999999999", "\xFF\x01"};
        switch (below(4)) {
        case 0:
            target->deleteFromChild();
            break;
        case 1: {
            const std::unique_ptr<QelMessageIterator> copy(target->newIterator(false));
            target->seekUp();
            target->copyToChild(copy.get());
            break;
        }
        case 2:
            target->putValue(std::string(oddValues[below(oddValues.size())]), 0);
            break;
        default:
            target->putValue(std::string("stray"), static_cast<int>(1000 + below(900)));
        }
    }

    [[nodiscard]] unsigned below(std::size_t limit) {
        return std::uniform_int_distribution<unsigned>(0, static_cast<unsigned>(limit - 1))(m_random);
    }
    [[nodiscard]] std::uint32_t bits() { return static_cast<std::uint32_t>(m_random()); }
    /// 0 to 2^52; more than 32 bits in almost all cases.
    [[nodiscard]] long long bigNumber() { return static_cast<long long>(bits()) << 20U; }
    /// Seconds since the epoch.
    [[nodiscard]] long time() { return static_cast<long>(below(2'000'000'000)); }
    /// Short: a string that does not fit a field of limited length ends the process.
    [[nodiscard]] std::string text() {
        static constexpr std::array<std::string_view, 8> values{"",      "a",        "<&>",      "two words",
                                                                "12345", "10.0.0.1", "\xC3\xB6", " padded "};
        return std::string(values[below(values.size())]);
    }
    /// Sets the value of the current element.
    void putText(QelMessageIterator& cursor, bool encoded) {
        if (encoded)
            cursor.putValueBase64(text(), 0);
        else
            cursor.putValue(text(), 0);
    }

private:
    /// Moves to a random descendant and returns its depth.
    int descend(const QelMessageIterator& cursor) {
        int depth = 0;
        while ((depth == 0 || below(3) != 0) && cursor.firstChild() == 0) {
            ++depth;
            for (unsigned left = below(8); left > 0 && cursor.nextSibling() == 0;)
                --left;
        }
        return depth;
    }

    void putField(QelMessageIterator& cursor, const QelWireLayout& layout, const QelWireField& field) {
        const QelWireCodec& codec = *field.codec;
        const std::pair key(std::string(layout.typeName), field.ownID());
        if (const auto custom = m_families.fields.find(key); custom != m_families.fields.end()) {
            custom->second(*this, cursor);
            return;
        }
        switch (codec.kind) {
        case QelWireKind::base:
            fillRecord(cursor, codec);
            break;
        case QelWireKind::step:
            // The content type is sufficient here; other steps have an entry in RandomFamily::fields.
            putChild(cursor, field.id, contentOf(layout, field), field.form);
            break;
        case QelWireKind::group:
        case QelWireKind::sequence:
        case QelWireKind::set:
        case QelWireKind::bits:
        case QelWireKind::map:
            if (field.id != 0)
                cursor.newChild(field.id);
            putContent(cursor, field);
            if (field.id != 0)
                cursor.seekUp();
            break;
        default:
            putChild(cursor, field.id, codec, field.form);
        }
    }

    /// Content of a field with several values.
    void putContent(QelMessageIterator& cursor, const QelWireField& field) {
        switch (field.codec->kind) {
        case QelWireKind::group:
            fillRecord(cursor, *field.codec);
            break;
        case QelWireKind::bits:
            for (const QelWireBit& each : field.codec->bits)
                if (below(2) == 0)
                    cursor.putChild(each.id);
            break;
        case QelWireKind::map:
            for (unsigned left = below(4); left > 0; --left)
                putEntry(cursor, field);
            break;
        default:
            for (unsigned left = below(4) + 1; left > 0; --left)
                putItem(cursor, field);
        }
    }

    static const QelWireCodec& contentOf(const QelWireLayout& layout, const QelWireField& field) {
        if (const QelWireCodec* const content = field.codec->item; content && !content->item)
            return *content;
        throw std::out_of_range("no generator for " + std::string(layout.typeName) + ", element " +
                                std::to_string(field.id));
    }

    void fillRecord(QelMessageIterator& cursor, const QelWireCodec& codec) {
        const QelWireLayout* const layout = codec.layout ? codec.layout() : nullptr;
        fill(cursor, layout ? layout->typeName : codec.typeName, layout);
    }

    void putItem(QelMessageIterator& cursor, const QelWireField& field) {
        cursor.newChild(field.item);
        putChild(cursor, field.value, *field.codec->item, field.form);
        cursor.seekUp();
    }

    void putEntry(QelMessageIterator& cursor, const QelWireField& field) {
        cursor.newChild(field.item);
        putChild(cursor, field.key, *field.codec->key, field.form);
        putChild(cursor, field.value, *field.codec->item, field.form);
        cursor.seekUp();
    }

    /// Puts a value in a new child `id`, or in the current element if `id` is 0.
    void putChild(QelMessageIterator& cursor, int id, const QelWireCodec& codec, QelWireForm form) {
        if (id == 0) {
            putValue(cursor, codec, form);
            return;
        }
        cursor.newChild(id);
        putValue(cursor, codec, form);
        cursor.seekUp();
    }

    void putValue(QelMessageIterator& cursor, const QelWireCodec& codec, QelWireForm form) {
        switch (codec.kind) {
        case QelWireKind::text:
            putText(cursor, form == QelWireForm::base64);
            break;
        case QelWireKind::integer:
            cursor.putValue(static_cast<int>(below(4)), 0);
            break;
        case QelWireKind::longInteger:
            if (form == QelWireForm::time)
                cursor.putValueTime(time(), 0);
            else
                cursor.putValueLongLong(bigNumber(), 0);
            break;
        case QelWireKind::real:
            cursor.putValueDouble(below(1000) / 7.0, 0);
            break;
        case QelWireKind::boolean:
            cursor.putValue(static_cast<int>(below(2)), 0);
            break;
        case QelWireKind::derived:
            m_families.withoutTable.at(std::string(codec.typeName))(*this, cursor);
            break;
        case QelWireKind::record:
            fillRecord(cursor, codec);
            break;
        default: // presence: no value
            break;
        }
    }

    std::mt19937 m_random;
    const RandomFamily& m_families;
};

} // namespace Qel::TestSupport
