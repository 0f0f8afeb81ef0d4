#include "circuit/ValueSources.h"

#include "model/ParameterTable.h"
#include "model/ShownText.h"

#include <algorithm>

namespace quorvik
{

using namespace Param;

namespace
{

QString Reading(const ParameterTable &table, int p)
{
    return ShownText(table.Value(p), table[p].Attributes);
}

ValueSource SourceBehind(const CircuitLink &link, const ParameterTable &table)
{
    const int selector = link.selector;
    ValueSource source;
    int status = -1;
    QString unit;
    if (selector >= DigitalIn1Destination && selector <= DigitalIn7Destination) {
        const int member = selector - DigitalIn1Destination;
        source.digitalInput = member + 1;
        source.name = QStringLiteral("digital input %1").arg(member + 1);
        status = DigitalIn1Status + member;
    } else if (selector >= AnalogIn1Destination && selector <= AnalogIn5Destination) {
        const int member = selector - AnalogIn1Destination;
        source.name = QStringLiteral("analog input %1").arg(member + 1);
        status = AnalogIn1Status + member;
        unit = QStringLiteral(" counts");
    } else if (selector == FrequencyInDestination) {
        source.name = QStringLiteral("the frequency input");
        status = FrequencyInStatus;
    } else if (link.kind == CircuitLink::Kind::Internal && link.source > 0) {
        source.name = link.name;
        source.reads = {link.source};
        source.text = QStringLiteral("%1 brings it from %2, which is %3")
                          .arg(link.name, table.FullName(link.source), Reading(table, link.source));
        return source;
    } else {
        source.name = link.name;
        source.text = QStringLiteral("%1 writes it").arg(link.name);
        return source;
    }
    source.reads = {status};
    source.text =
        QStringLiteral("%1 is its source and reads %2%3").arg(source.name, Reading(table, status), unit);
    return source;
}

} // namespace

QString ValueSource::Remedy(const ParameterTable &table, bool wantsFalse) const
{
    if (digitalInput < 1)
        return {};
    const int member = digitalInput - 1;
    const bool isClosed = table.Value(DigitalIn1Status + member) != 0;
    const bool whenOther =
        table.Value((isClosed ? DigitalIn1OpenValue : DigitalIn1ClosedValue) + member) != 0;
    if (whenOther != wantsFalse)
        return QStringLiteral("%1 digital input %2.")
            .arg(isClosed ? QStringLiteral("Open") : QStringLiteral("Close"))
            .arg(digitalInput);
    const bool whenThis = table.Value((isClosed ? DigitalIn1ClosedValue : DigitalIn1OpenValue) + member) != 0;
    if (whenThis != wantsFalse)
        return {}; // The input has just changed, and the value follows.
    return QStringLiteral("Neither open nor closed does digital input %1 give it: see its values, %2 and %3.")
        .arg(digitalInput)
        .arg(table.FullName(DigitalIn1OpenValue + member), table.FullName(DigitalIn1ClosedValue + member));
}

ValueSource SourceOfValue(const Circuit &circuit, const ParameterTable &table, int p)
{
    // Each overwrites what those before it have written.
    const std::vector<CircuitLink> &links = circuit.Links();
    const auto last = std::find_if(links.rbegin(), links.rend(), [p](const CircuitLink &link) {
        return link.destination == p && link.kind != CircuitLink::Kind::Output;
    });
    return last == links.rend() ? ValueSource() : SourceBehind(*last, table);
}

} // namespace quorvik
