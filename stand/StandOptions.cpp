#include "stand/StandOptions.h"

#include "core/Exception.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QMap>

namespace {

const QString kControl = QStringLiteral("control");
const QString kEngine = QStringLiteral("engine");
const QString kModel = QStringLiteral("model");
const QString kPort = QStringLiteral("port");
const QString kQuiet = QStringLiteral("quiet");
const QString kRestPort = QStringLiteral("rest-port");
const QString kScript = QStringLiteral("script");

void describe(QCommandLineParser *parser) {
    parser->setApplicationDescription(QStringLiteral(
        "A local recognition service on loopback: balancer, recognition server and speech source.\n"
        "Its own recogniser is a demonstration with 284 words, not a clinical engine."));
    parser->addOptions({
        {{QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Prints this text.")},
        {kPort, QStringLiteral("WebSocket port, 0 for any free one."), QStringLiteral("number"),
         QStringLiteral("34000")},
        {kRestPort, QStringLiteral("Port of the balancer and of REST, 0 for any free one."),
         QStringLiteral("number"), QStringLiteral("39255")},
        {kControl, QStringLiteral("Opens a control port, 0 for any free one."),
         QStringLiteral("number")},
        {kEngine,
         QStringLiteral(
             "\"acoustic\" recognises the sound, \"counting\" numbers it, \"scripted\" says "
             "what the script says. Without this option: scripted if there is a script."),
         QStringLiteral("name")},
        {kScript, QStringLiteral("What the scripted engine says; see the README."),
         QStringLiteral("file")},
        {kModel, QStringLiteral("The recogniser's folder, beside the program unless given."),
         QStringLiteral("folder")},
        {kQuiet, QStringLiteral("Prints nothing but the line that says it is ready.")},
    });
}

/// @throws Exception  the option holds no port number
quint16 portOf(const QCommandLineParser &parser, const QString &option) {
    bool isNumber = false;
    const quint16 port = parser.value(option).toUShort(&isNumber);
    if (!isNumber) {
        throw Exception(QStringLiteral("--%1 wants a port from 0 to 65535, not \"%2\"")
                            .arg(option, parser.value(option)));
    }
    return port;
}

/// @throws Exception  there is no such engine
StandOptions::Engine engineOf(const QCommandLineParser &parser) {
    static const QMap<QString, StandOptions::Engine> engines{
        {QStringLiteral("acoustic"), StandOptions::Engine::Acoustic},
        {QStringLiteral("counting"), StandOptions::Engine::Counting},
        {QStringLiteral("scripted"), StandOptions::Engine::Scripted},
    };
    const QString unnamed =
        parser.isSet(kScript) ? QStringLiteral("scripted") : QStringLiteral("acoustic");
    const QString name = parser.isSet(kEngine) ? parser.value(kEngine) : unnamed;
    const auto engine = engines.constFind(name);
    if (engine == engines.constEnd()) {
        throw Exception(QStringLiteral("there is no engine \"%1\": take one of %2")
                            .arg(name, engines.keys().join(QStringLiteral(", "))));
    }
    return *engine;
}

} // namespace

StandOptions StandOptions::parse(const QStringList &arguments) {
    QCommandLineParser parser;
    describe(&parser);
    if (!parser.parse(arguments))
        throw Exception(parser.errorText());
    if (!parser.positionalArguments().isEmpty()) {
        throw Exception(QStringLiteral("there is nothing to do with \"%1\"")
                            .arg(parser.positionalArguments().first()));
    }
    StandOptions options;
    if (parser.isSet(QStringLiteral("help"))) {
        options.help = parser.helpText();
        return options;
    }
    options.port = portOf(parser, kPort);
    options.restPort = portOf(parser, kRestPort);
    if (parser.isSet(kControl))
        options.controlPort = portOf(parser, kControl);
    options.engine = engineOf(parser);
    if (parser.isSet(kScript))
        options.script = Script::load(parser.value(kScript));
    options.modelFolder = parser.isSet(kModel) ? parser.value(kModel)
                                               : QCoreApplication::applicationDirPath() +
                                                     QStringLiteral("/recogniser");
    options.quiet = parser.isSet(kQuiet);
    return options;
}
