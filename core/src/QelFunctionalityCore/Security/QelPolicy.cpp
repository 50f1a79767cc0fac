#include "QelFunctionalityCore/Security/QelPolicy.h"

#include "QelFunctionalityCore/Values/QelValueCodecs.h"
#include "QelMessage/QelCombinators.h"
#include "QelMessage/QelElementNames.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

namespace {

constexpr int environmentNamespace = 292;

int readPolicyRules(const QelMessageIterator& cursor, QelPolicy& policy) {
    if (cursor.seekPresence("rules"_element) != 0) {
        policy.rules.specify(false);
        return 0;
    }
    const int result = cursor.getObject(policy.rules.get(), QelPolicyRuleMapReader(), "rules"_element);
    policy.rules.specify(result == 0);
    return result;
}

int readEffectiveRules(const QelMessageIterator& cursor, QelEffectivePolicyAssignment& assignment) {
    assignment.rules.specify(cursor.seekPresence("rules"_element) == 0);
    return assignment.rules.isSpecified()
               ? cursor.getObject(assignment.rules.get(), QelPolicyRuleMapReader(), "rules"_element)
               : 0;
}

template <class Record> int writeRules(QelMessageIterator& cursor, const Record& record) {
    return record.rules.isSpecified() ? cursor.putObject(record.rules.get(), QelPolicyRuleMapWriter(), "rules"_element)
                                      : 0;
}

} // namespace

int QelPolicyRuleMapReader::operator()(const QelMessageIterator& cursor, QelPolicyRuleMap& rules) const {
    return QelReaderMap("rule"_element, QelReaderOptional, QelReaderID(QelReaderString(), 1010, QelReaderRequired),
                        QelReaderID(QelReaderString(), 1018, QelReaderRequired))(cursor, rules);
}

int QelPolicyRuleMapWriter::operator()(QelMessageIterator& cursor, const QelPolicyRuleMap& rules) const {
    cursor.saveNamespace(environmentNamespace);
    const int result = QelWriterMap("rule"_element, QelWriterID(QelWriterString(), 1010),
                                    QelWriterID(QelWriterString(), 1018))(cursor, rules);
    cursor.saveNamespace(0);
    return result;
}

template <> struct Wire<QelPolicy> : WireWords<QelPolicy> {
    static constexpr bool bestEffort = true;
    static constexpr QelWireField fields[] = {
        field<&R::policyID>(1010, optional, ifSet),
        field<&R::name>(1026, optional, ifSet, base64),
        field<&R::description>(1496, optional, ifSet, base64),
        wrappedMap<&R::assignments>(2275, 2277, 2285, 2286, optional, ifSet),
        step<&readPolicyRules, &writeRules<QelPolicy>>("rules", "rules"_element, optional, ifSet),
    };
};
const QelWireLayout& QelPolicy::wire = wireLayoutOf<QelPolicy>;

template <> struct Wire<QelObjectToPolicyAssignment> : WireWords<QelObjectToPolicyAssignment> {
    static constexpr bool bestEffort = true;
    static constexpr QelWireField fields[] = {
        field<&R::object>(1010, required, always),
        field<&R::policyLevel>(2286, ignored, always),
    };
};
const QelWireLayout& QelObjectToPolicyAssignment::wire = wireLayoutOf<QelObjectToPolicyAssignment>;

template <> struct Wire<QelEffectivePolicyAssignment> : WireWords<QelEffectivePolicyAssignment> {
    static constexpr QelWireField fields[] = {
        field<&R::policyID>(2285, required, always),
        step<&readEffectiveRules, &writeRules<QelEffectivePolicyAssignment>>("rules", "rules"_element, optional, ifSet),
    };
};
const QelWireLayout& QelEffectivePolicyAssignment::wire = wireLayoutOf<QelEffectivePolicyAssignment>;

} // namespace Qel
