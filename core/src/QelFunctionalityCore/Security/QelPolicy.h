#pragma once

#include <map>
#include <string>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Values/QelGUID.h"
#include "QelFunctionalityCore/Values/QelProperty.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// The rules of a policy: name to value.
using QelPolicyRuleMap = std::map<std::string, std::string>;

/// Reads the rules that are nested in the current element; -1 at an entry without a name or a value.
struct QEL_EXPORT QelPolicyRuleMapReader {
    int operator()(const QelMessageIterator& cursor, QelPolicyRuleMap& rules) const;
};

/// Writes the entries in namespace 292, then resets the cursor to no namespace.
struct QEL_EXPORT QelPolicyRuleMapWriter : QelWriterBase {
    int operator()(QelMessageIterator& cursor, const QelPolicyRuleMap& rules) const;
};

/// A policy, or a subset of its fields in a request.
struct QEL_EXPORT QelPolicy : QelRecord<QelPolicy> {
    QelOptionalProperty<QelGUID> policyID;
    QelOptionalProperty<std::string> name;
    QelOptionalProperty<std::string> description;
    QelOptionalProperty<std::map<QelGUID, int>> assignments; ///< object to policy level
    QelOptionalProperty<QelPolicyRuleMap> rules;

    static const QelWireLayout& wire;
};

/// The level of a policy on an object.
struct QEL_EXPORT QelObjectToPolicyAssignment : QelRecord<QelObjectToPolicyAssignment> {
    QelGUID object;
    int policyLevel = 0;

    static const QelWireLayout& wire;
};

/// A policy as it applies to an object, with the rules that are in effect.
struct QEL_EXPORT QelEffectivePolicyAssignment : QelRecord<QelEffectivePolicyAssignment> {
    QelGUID policyID;
    /// A read sets this to specified if the element is present, even if its content cannot be read.
    QelOptionalProperty<QelPolicyRuleMap> rules;

    static const QelWireLayout& wire;
};

} // namespace Qel
