// ombrel-inspect FILE: prints, as one JSON object, the rulesets that Ombrel
// reads from a stylesheet and the text it would write back. Its output is kept
// stable so that the parser can be checked against other tools.

#include "model/CSSFile.h"
#include "model/CSSParser.h"

#include <QCoreApplication>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringDecoder>

#include <cstdio>

using namespace Ombrel;

namespace {

int fail(const char *message)
{
    std::fprintf(stderr, "ombrel-inspect: %s\n", message);
    return 2;
}

QJsonObject describe(const CSSFile &file)
{
    QJsonArray rulesets;
    for (const CSSRulesetPtr &ruleset : file.rulesets()) {
        QJsonArray properties;
        for (const CSSProperty &property : ruleset->properties())
            properties.append(QJsonObject{{QStringLiteral("name"), property.name},
                                          {QStringLiteral("value"), property.value}});
        rulesets.append(QJsonObject{{QStringLiteral("selector"), ruleset->selector()},
                                    {QStringLiteral("properties"), properties}});
    }
    return QJsonObject{{QStringLiteral("rulesets"), rulesets},
                       {QStringLiteral("generated"), file.generateCSS()}};
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const QStringList arguments = app.arguments().mid(1);
    if (arguments.size() != 1)
        return fail("usage: ombrel-inspect FILE");

    QFile input(arguments.first());
    if (!input.open(QIODevice::ReadOnly))
        return fail("cannot read the file");
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString text = decoder.decode(input.readAll());
    if (decoder.hasError())
        return fail("the file is not valid UTF-8");

    const CSSFile file(input.fileName(), CSSParser::parse(text), text);
    const QByteArray json = QJsonDocument(describe(file)).toJson(QJsonDocument::Indented);
    std::fwrite(json.constData(), 1, size_t(json.size()), stdout);
    return 0;
}
