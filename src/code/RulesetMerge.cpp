#include "RulesetMerge.h"

#include "model/CSSParser.h"

#include <QHash>

#include <vector>

namespace Ombrel::RulesetMerge {

namespace {

// For each parsed ruleset, the index in pool of the ruleset it keeps, or -1.
template<typename SelectorAt>
std::vector<qsizetype> partners(const CSSRulesetList &pool, qsizetype count, SelectorAt selectorAt)
{
    std::vector<qsizetype> result(size_t(count), -1);
    // Typing within declarations leaves every selector in its place.
    bool inStep = pool.size() == count;
    for (qsizetype i = 0; inStep && i < count; ++i)
        inStep = pool[i]->selector() == selectorAt(i);
    if (inStep) {
        for (qsizetype i = 0; i < count; ++i)
            result[size_t(i)] = i;
        return result;
    }

    // Each selector's rulesets in file order, taken from the front.
    struct Queue
    {
        std::vector<qsizetype> indexes;
        size_t next = 0;
    };
    QHash<QString, Queue> queues;
    queues.reserve(pool.size());
    for (qsizetype i = 0; i < pool.size(); ++i)
        queues[pool[i]->selector()].indexes.push_back(i);
    for (qsizetype i = 0; i < count; ++i) {
        const auto queue = queues.find(selectorAt(i));
        if (queue != queues.end() && queue->next < queue->indexes.size())
            result[size_t(i)] = queue->indexes[queue->next++];
    }
    return result;
}

} // namespace

void mergeRulesets(CSSFile &file, const CSSRulesetList &parsed)
{
    const CSSRulesetList pool = file.rulesets();
    const std::vector<qsizetype> kept =
        partners(pool, parsed.size(), [&parsed](qsizetype i) { return parsed[i]->selector(); });
    CSSRulesetList merged;
    merged.reserve(parsed.size());
    for (qsizetype i = 0; i < parsed.size(); ++i) {
        if (kept[size_t(i)] < 0) {
            merged.append(parsed[i]);
            continue;
        }
        const CSSRulesetPtr &existing = pool[kept[size_t(i)]];
        existing->setProperties(parsed[i]->properties());
        merged.append(existing);
    }
    file.setRulesets(merged);
}

void mergeRulesets(CSSFile &file, const QList<ParsedRuleset> &parsed)
{
    const CSSRulesetList pool = file.rulesets();
    const std::vector<qsizetype> kept =
        partners(pool, parsed.size(), [&parsed](qsizetype i) { return parsed[i].selector; });
    CSSRulesetList merged;
    merged.reserve(parsed.size());
    for (qsizetype i = 0; i < parsed.size(); ++i) {
        CSSPropertyList properties;
        properties.reserve(parsed[i].properties.size());
        for (const CSSProperty &property : parsed[i].properties)
            properties.emplaceBack(property.name, property.value);
        if (kept[size_t(i)] < 0) {
            merged.append(std::make_shared<CSSRuleset>(parsed[i].selector, std::move(properties),
                                                       CSSParser::positionForIndex(i)));
            continue;
        }
        const CSSRulesetPtr &existing = pool[kept[size_t(i)]];
        existing->setProperties(properties);
        merged.append(existing);
    }
    file.setRulesets(merged);
}

} // namespace Ombrel::RulesetMerge
