#include "model/Intent.h"

#include "model/ParameterTable.h"

namespace quorvik
{

namespace
{

bool OperatesAMachine(Origin origin)
{
    return origin == Origin::VirtualOperator || origin == Origin::IOSimulator ||
           origin == Origin::DriveCommand;
}

} // namespace

QString NameOf(Origin origin)
{
    static const QString names[Origins] = {
        QStringLiteral("program"),      QStringLiteral("edit dialog"),      QStringLiteral("switch"),
        QStringLiteral("Mentor"),       QStringLiteral("Virtual Operator"), QStringLiteral("I/O Simulator"),
        QStringLiteral("file"),         QStringLiteral("compare"),          QStringLiteral("undo"),
        QStringLiteral("command line"), QStringLiteral("drive command")};
    const auto number = std::size_t(origin);
    return number < std::size(names) ? names[number] : QString();
}

Intent::Intent(ParameterTable &table, Origin origin, const QString &title)
    : Intent(table, IntentInfo{origin, title, !OperatesAMachine(origin)})
{
}

Intent::Intent(ParameterTable &table, const IntentInfo &info)
    : table_(table)
{
    table_.BeginIntent(info);
}

Intent::~Intent()
{
    table_.EndIntent();
}

void Intent::Note(const QString &what)
{
    table_.NoteIntent(what);
}

} // namespace quorvik
