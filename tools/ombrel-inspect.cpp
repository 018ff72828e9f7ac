// ombrel-inspect FILE: prints, as one JSON object, the rulesets that Ombrel
// reads from a stylesheet, their custom properties and resolved readings, and
// the text it would write back.
// ombrel-inspect --color TEXT: the reading of one colour text, or null.
// ombrel-inspect --resolve TEXT FILE: TEXT with FILE's var() references
// substituted.
// ombrel-inspect --rename-variable OLD NEW FILE: FILE as the first form
// prints it, after the variables tab's rename of the first declaration named
// OLD, in file order, to NEW; without such a declaration, FILE unchanged.
// ombrel-inspect --merge OLD NEW: OLD read as the file's model, then NEW's
// text merged into it as a keystroke in the code tab does: for each ruleset
// its selector, its declarations and the index in OLD of the ruleset it kept
// (null for a new one), and the text the file would write back.
// The output is kept stable so that Ombrel can be checked against other tools.

#include "code/IncrementalParse.h"
#include "code/RulesetMerge.h"
#include "knowledge/Color.h"
#include "model/CSSFile.h"
#include "model/CSSParser.h"
#include "variables/VariableOperations.h"

#include <QCoreApplication>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringDecoder>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <optional>

using namespace Ombrel;

namespace {

int fail(const char *message)
{
    std::fprintf(stderr, "ombrel-inspect: %s\n", message);
    return 2;
}

QJsonValue hexOrNull(const std::optional<Color> &color)
{
    return color ? QJsonValue(color->cssHexString()) : QJsonValue(QJsonValue::Null);
}

QJsonObject describeResolved(const CSSRuleset &ruleset, const CSSVariables &variables)
{
    return QJsonObject{
        {QStringLiteral("backgroundColor"), hexOrNull(ruleset.resolvedBackgroundColor(variables))},
        {QStringLiteral("textColor"), hexOrNull(ruleset.resolvedTextColor(variables))},
        {QStringLiteral("borderRadius"), ruleset.resolvedBorderRadius(variables)},
        {QStringLiteral("fontWeight"), fontWeightName(ruleset.resolvedFontWeight(variables))},
    };
}

QJsonObject describe(const CSSFile &file)
{
    const CSSVariables variables = file.variables();
    QJsonArray rulesets;
    for (const CSSRulesetPtr &ruleset : file.rulesets()) {
        QJsonArray properties;
        for (const CSSProperty &property : ruleset->properties())
            properties.append(QJsonObject{{QStringLiteral("name"), property.name},
                                          {QStringLiteral("value"), property.value}});
        rulesets.append(
            QJsonObject{{QStringLiteral("selector"), ruleset->selector()},
                        {QStringLiteral("properties"), properties},
                        {QStringLiteral("resolved"), describeResolved(*ruleset, variables)}});
    }
    QJsonObject variableMap;
    for (auto it = variables.constBegin(); it != variables.constEnd(); ++it)
        variableMap.insert(it.key(), it.value());
    return QJsonObject{{QStringLiteral("rulesets"), rulesets},
                       {QStringLiteral("variables"), variableMap},
                       {QStringLiteral("generated"), file.generateCSS()}};
}

void print(const QByteArray &text)
{
    std::fwrite(text.constData(), 1, size_t(text.size()), stdout);
}

int printColor(const QString &text)
{
    const std::optional<Color> color = Color::fromCssString(text);
    if (!color) {
        print("null\n");
        return 0;
    }
    const QJsonObject reading{{QStringLiteral("hex"), color->cssHexString()},
                              {QStringLiteral("isLight"), color->isLight()}};
    print(QJsonDocument(reading).toJson(QJsonDocument::Indented));
    return 0;
}

// The file's text read as UTF-8, or none with the reason printed.
std::optional<QString> readText(const QString &path)
{
    QFile input(path);
    if (!input.open(QIODevice::ReadOnly)) {
        fail("cannot read the file");
        return std::nullopt;
    }
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString text = decoder.decode(input.readAll());
    if (decoder.hasError()) {
        fail("the file is not valid UTF-8");
        return std::nullopt;
    }
    return text;
}

// The file read as UTF-8 and parsed, or none with the reason printed.
std::shared_ptr<CSSFile> readStylesheet(const QString &path)
{
    const std::optional<QString> text = readText(path);
    if (!text)
        return nullptr;
    return std::make_shared<CSSFile>(path, CSSParser::parse(*text), *text);
}

// The edit that turns before into after: the units between their common
// start and their common end.
struct Edit
{
    qsizetype at = 0;
    qsizetype removed = 0;
    qsizetype added = 0;
};

Edit editBetween(const QString &before, const QString &after)
{
    qsizetype start = 0;
    const qsizetype shorter = std::min(before.size(), after.size());
    while (start < shorter && before[start] == after[start])
        ++start;
    qsizetype end = 0;
    while (end < shorter - start &&
           before[before.size() - 1 - end] == after[after.size() - 1 - end])
        ++end;
    return {start, before.size() - start - end, after.size() - start - end};
}

int printMerge(const QString &oldPath, const QString &newPath)
{
    const std::optional<QString> oldText = readText(oldPath);
    const std::optional<QString> newText = oldText ? readText(newPath) : std::nullopt;
    if (!newText)
        return 2;
    const auto file = std::make_shared<CSSFile>(oldPath, CSSParser::parse(*oldText), *oldText);
    const CSSRulesetList before = file->rulesets();

    IncrementalParse parse;
    parse.reset(*oldText);
    const Edit edit = editBetween(*oldText, *newText);
    parse.edit(*newText, edit.at, edit.removed, edit.added);
    RulesetMerge::mergeRulesets(*file, parse.rulesets());

    QJsonArray rulesets;
    for (const CSSRulesetPtr &ruleset : file->rulesets()) {
        QJsonArray properties;
        for (const CSSProperty &property : ruleset->properties())
            properties.append(QJsonObject{{QStringLiteral("name"), property.name},
                                          {QStringLiteral("value"), property.value}});
        const qsizetype kept = before.indexOf(ruleset);
        rulesets.append(QJsonObject{
            {QStringLiteral("selector"), ruleset->selector()},
            {QStringLiteral("properties"), properties},
            {QStringLiteral("kept"), kept < 0 ? QJsonValue(QJsonValue::Null) : QJsonValue(kept)}});
    }
    const QJsonObject merged{{QStringLiteral("rulesets"), rulesets},
                             {QStringLiteral("generated"), file->generateCSS()}};
    print(QJsonDocument(merged).toJson(QJsonDocument::Indented));
    return 0;
}

int printRenamed(const QString &oldName, const QString &newName, const QString &path)
{
    const std::shared_ptr<CSSFile> file = readStylesheet(path);
    if (!file)
        return 2;
    [&] {
        for (const CSSRulesetPtr &ruleset : file->rulesets()) {
            for (const CSSProperty &property : ruleset->properties()) {
                if (property.name == oldName) {
                    VariableOperations(file, nullptr)
                        .renameVariable(property.id, ruleset->id(), newName);
                    return;
                }
            }
        }
    }();
    print(QJsonDocument(describe(*file)).toJson(QJsonDocument::Indented));
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const QStringList arguments = app.arguments().mid(1);
    if (arguments.size() == 2 && arguments.first() == QLatin1String("--color"))
        return printColor(arguments.at(1));
    if (arguments.size() == 3 && arguments.first() == QLatin1String("--resolve")) {
        const std::shared_ptr<CSSFile> file = readStylesheet(arguments.at(2));
        if (!file)
            return 2;
        print(CSSRuleset::resolveVars(arguments.at(1), file->variables()).toUtf8() + '\n');
        return 0;
    }
    if (arguments.size() == 4 && arguments.first() == QLatin1String("--rename-variable"))
        return printRenamed(arguments.at(1), arguments.at(2), arguments.at(3));
    if (arguments.size() == 3 && arguments.first() == QLatin1String("--merge"))
        return printMerge(arguments.at(1), arguments.at(2));
    if (arguments.size() != 1 || arguments.first().startsWith(QLatin1String("--")))
        return fail("usage: ombrel-inspect FILE | --color TEXT | --resolve TEXT FILE | "
                    "--rename-variable OLD NEW FILE | --merge OLD NEW");

    const std::shared_ptr<CSSFile> file = readStylesheet(arguments.first());
    if (!file)
        return 2;
    print(QJsonDocument(describe(*file)).toJson(QJsonDocument::Indented));
    return 0;
}
