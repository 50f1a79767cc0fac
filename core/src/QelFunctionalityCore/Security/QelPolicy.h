#pragma once

#include <map>
#include <string>

#include "QelFunctionalityCore/Values/QelGUID.h"
#include "QelFunctionalityCore/Values/QelProperty.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// The rules of a policy: values by names.
using QelPolicyRuleMap = std::map<std::string, std::string>;

/// Reads rules from the entries in the current element; -1 for an entry without a name or a value.
struct QelPolicyRuleMapReader {
    int operator()(const QelMessageIterator& cursor, QelPolicyRuleMap& rules) const;
};

/// The entries bear namespace 292; what is written behind them bears none.
struct QelPolicyRuleMapWriter : QelWriterBase {
    int operator()(QelMessageIterator& cursor, const QelPolicyRuleMap& rules) const;
};

/// A policy, or those of its fields that a request is about.
struct QelPolicy {
    QelOptionalProperty<QelGUID> policyID;
    QelOptionalProperty<std::string> name;
    QelOptionalProperty<std::string> description;
    QelOptionalProperty<std::map<QelGUID, int>> assignments; ///< the policy's level on each object
    QelOptionalProperty<QelPolicyRuleMap> rules;

    using Reader = QelRecordReader<QelPolicy>;
    using Writer = QelRecordWriter<QelPolicy>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// The level on which an object has a policy.
struct QelObjectToPolicyAssignment {
    QelGUID object;
    int policyLevel = 0;

    using Reader = QelRecordReader<QelObjectToPolicyAssignment>;
    using Writer = QelRecordWriter<QelObjectToPolicyAssignment>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// A policy as it applies to an object, with the rules that are left of it.
struct QelEffectivePolicyAssignment {
    QelGUID policyID;
    /// Specified after a read exactly if the element was there, readable or not.
    QelOptionalProperty<QelPolicyRuleMap> rules;

    using Reader = QelRecordReader<QelEffectivePolicyAssignment>;
    using Writer = QelRecordWriter<QelEffectivePolicyAssignment>;
    using reader_type = Reader;
    using writer_type = Writer;
};

} // namespace Qel
