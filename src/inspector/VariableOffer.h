#pragma once

#include "model/CSSVariables.h"

#include <QList>
#include <QString>

#include <memory>
#include <optional>

namespace Ombrel {

// One custom property offered for a var() reference: its name with the
// "--", and its raw value.
struct VariableChoice
{
    QString name;
    QString value;

    friend bool operator==(const VariableChoice &, const VariableChoice &) = default;
};

using VariableChoices = QList<VariableChoice>;

// The custom properties of a file as the inspector's rows offer them, read
// once per refresh of the panel and shared by all its rows: all of them by
// name, and those whose raw value reads as a colour, for colour properties.
struct VariableOffer
{
    CSSVariables variables;
    // Sorted by name in plain text order.
    VariableChoices all;
    VariableChoices colours;

    static std::shared_ptr<const VariableOffer> from(const CSSVariables &variables);

    // What a property of that name is offered: only the colours for a
    // colour property, everything for any other.
    const VariableChoices &compatibleWith(const QString &propertyName) const;
};

using VariableOfferPtr = std::shared_ptr<const VariableOffer>;

// The variable a value refers to: for "var(--name)" or "var(--name, fallback)"
// (any case of "var", blanks and tabs around) the name as written; none for
// anything else, an unclosed "var(--a" among them.
std::optional<QString> referencedVariable(const QString &value);

} // namespace Ombrel
