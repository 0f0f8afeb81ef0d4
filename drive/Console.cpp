#include "drive/Console.h"

#include "drive/DriveCommands.h"
#include "drive/WholeNumber.h"
#include "platform/Guard.h"

#include <cerrno>
#include <cstdio>
#include <functional>
#include <optional>
#include <unistd.h>

namespace quorvik::drive
{

namespace
{

constexpr int LowestLevel = -2048;
constexpr int HighestLevel = 4095;
constexpr int HighestFrequency = 60000;

QString NotUnderstood(const QString &line)
{
    return QStringLiteral("? %1").arg(line);
}

} // namespace

Console::Console(Workbench bench, QObject *parent)
    : QObject(parent)
    , bench_(bench)
{
}

void Console::Follow(int descriptor)
{
    input_ = new QSocketNotifier(descriptor, QSocketNotifier::Read, this);
    connect(input_, &QSocketNotifier::activated, this, [this] { Guarded([this] { ReadInput(); }); });
}

void Console::ReadInput()
{
    char buffer[4096];
    const ssize_t count = ::read(int(input_->socket()), buffer, sizeof buffer);
    if (count < 0 && (errno == EINTR || errno == EAGAIN))
        return;
    if (count <= 0) {
        // A closed input stays readable for ever.
        input_->setEnabled(false);
        Q_EMIT InputEnded();
        return;
    }
    partial_.append(buffer, int(count));
    for (qsizetype end = partial_.indexOf('\n'); end >= 0; end = partial_.indexOf('\n')) {
        const QString line = QString::fromUtf8(partial_.left(end)).trimmed();
        partial_.remove(0, end + 1);
        if (line.isEmpty())
            continue;
        for (const QString &answer : Execute(line))
            std::puts(qPrintable(answer));
        std::fflush(stdout);
    }
}

QStringList Console::Print(const QStringList &words)
{
    const DriveTable &table = bench_.table;
    if (words.size() == 1) {
        QStringList lines{QStringLiteral("begin table")};
        for (int p = 0; p <= table.LastParam(); ++p)
            lines << QStringLiteral("%1 %2").arg(p).arg(table.Get(p));
        return lines << QStringLiteral("end table");
    }
    const std::optional<int> p = WholeNumber(words[1], 0, table.LastParam());
    if (!p)
        return {NotUnderstood(words.join(u' '))};
    const ParamRecord &record = table.Record(*p);
    return {QStringLiteral("%1 %2 min %3 max %4 attributes %5 preset %6 %7")
                .arg(*p)
                .arg(record.Value)
                .arg(record.Min)
                .arg(record.Max)
                .arg(record.Attributes)
                .arg(record.Preset)
                .arg(record.Name)};
}

QString Console::Terminal(const QStringList &words)
{
    Terminals &inputs = bench_.machine.Inputs();
    const QString kind = words.value(1);
    const bool isAnalog = kind == QStringLiteral("analog");
    const bool isDigital = kind == QStringLiteral("digital");
    if (kind == QStringLiteral("frequency") && words.size() == 3) {
        if (const auto hertz = WholeNumber(words[2], 0, HighestFrequency)) {
            inputs.frequency = *hertz;
            return {};
        }
    } else if ((isAnalog || isDigital) && words.size() == 4) {
        const auto member =
            WholeNumber(words[2], 1, int(isAnalog ? inputs.analog.size() : inputs.digital.size()));
        const auto level =
            isAnalog ? WholeNumber(words[3], LowestLevel, HighestLevel) : WholeNumber(words[3], 0, 1);
        if (member && level) {
            if (isAnalog)
                inputs.analog[std::size_t(*member - 1)] = *level;
            else
                inputs.digital[std::size_t(*member - 1)] = *level != 0;
            return {};
        }
    }
    return NotUnderstood(words.join(u' '));
}

QString Console::Feedback(const QStringList &words)
{
    Terminals &inputs = bench_.machine.Inputs();
    const auto percent = WholeNumber(words.value(2), -200, 200);
    if (words.size() == 3 && percent && words[1] == QStringLiteral("tachometer"))
        inputs.tachometer = *percent / 100.0;
    else if (words.size() == 3 && percent && words[1] == QStringLiteral("encoder"))
        inputs.encoder = *percent / 100.0;
    else
        return NotUnderstood(words.join(u' '));
    return {};
}

QString Console::Fault(const QString &rest)
{
    if (rest != QStringLiteral("off"))
        return bench_.faults.Add(rest, SteadyNow());
    bench_.faults.Clear();
    return {};
}

QStringList Console::Execute(const QString &line)
{
    const QStringList words = line.simplified().split(u' ');
    const QString &verb = words[0];
    const QString rest = line.simplified().mid(verb.size() + 1);
    const auto said = [](const QString &sentence) {
        return sentence.isEmpty() ? QStringList() : QStringList(sentence);
    };
    const int last = bench_.table.LastParam();
    if (verb == QStringLiteral("print"))
        return Print(words);
    if (verb == QStringLiteral("get") && words.size() == 2) {
        if (const auto p = WholeNumber(words[1], 0, last))
            return {QStringLiteral("%1 %2").arg(*p).arg(bench_.table.Get(*p))};
    } else if (verb == QStringLiteral("set") && words.size() == 3) {
        const auto p = WholeNumber(words[1], 0, last);
        const auto value = WholeNumber(words[2], -32768, 65535);
        if (p && value) {
            bench_.table.Put(*p, *value);
            return {};
        }
    } else if (verb == QStringLiteral("terminal")) {
        return said(Terminal(words));
    } else if (verb == QStringLiteral("feedback")) {
        return said(Feedback(words));
    } else if (line == QStringLiteral("demo on") || line == QStringLiteral("demo off")) {
        isDemo_ = line == QStringLiteral("demo on");
        return {};
    } else if (verb == QStringLiteral("fault") || verb == QStringLiteral("faults")) {
        return said(Fault(rest));
    } else if (verb == QStringLiteral("stats")) {
        return bench_.server.StatLines();
    } else if (verb == QStringLiteral("power-cycle")) {
        bench_.commands.Restart();
        return {};
    } else if (verb == QStringLiteral("freeze") || verb == QStringLiteral("thaw")) {
        isFrozen_ = verb == QStringLiteral("freeze");
        return {};
    } else if (verb == QStringLiteral("trip") && words.size() == 2) {
        if (const auto bits = WholeNumber(words[1], 1, Fault::All)) {
            bench_.machine.Trip(*bits);
            return {};
        }
    } else if (verb == QStringLiteral("load") && words.size() == 2) {
        if (const auto percent = WholeNumber(words[1], 0, 200)) {
            bench_.machine.SetLoad(*percent / 100.0);
            return {};
        }
    } else if (verb == QStringLiteral("echo")) {
        return {rest};
    } else if (verb == QStringLiteral("quit")) {
        Q_EMIT QuitAsked();
        return {};
    }
    return {NotUnderstood(line)};
}

} // namespace quorvik::drive
