#include "operator/OperatorLinks.h"

#include "desktop/Desk.h"
#include "model/Document.h"
#include "model/ParameterNumbers.h"
#include "operator/FormVirtualOperator.h"

namespace quorvik
{

std::vector<CircuitLink> OperatorLinks(const Desk &desk)
{
    std::vector<CircuitLink> links;
    if (desk.forms.FindOpenBlock(FormVirtualOperator::Caption()) <= 0)
        return links;
    const auto add = [&links](int p, const QString &control) {
        links.push_back({.kind = CircuitLink::Kind::Operator,
                         .destination = p,
                         .name = control + QStringLiteral(" of the ") + FormVirtualOperator::Caption()});
    };
    add(Param::Run, QStringLiteral("Run"));
    add(Param::Stop, QStringLiteral("Stop"));
    add(Param::Jog, QStringLiteral("Jog"));
    for (int slot = 0; slot < FormVirtualOperator::Records; ++slot) {
        const int p = desk.document.VirtualSettings.at(std::size_t(slot)).Destination;
        if (p <= 0)
            continue;
        const bool isSignal = slot < FormVirtualOperator::Signals;
        add(p, (isSignal ? QStringLiteral("Signal %1") : QStringLiteral("Digital %1"))
                   .arg(QChar(u'A' + slot % FormVirtualOperator::Signals)));
    }
    return links;
}

} // namespace quorvik
