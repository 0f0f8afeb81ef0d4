#include "desktop/ParameterMime.h"

namespace quorvik
{

namespace
{

const QString Format = QStringLiteral("application/x-quorvik-parameter");

} // namespace

QMimeData *MakeParameterMime(int p, const QString &text)
{
    auto *data = new QMimeData;
    data->setData(Format, QByteArray::number(p));
    data->setText(text);
    return data;
}

std::optional<int> ParameterOf(const QMimeData &data)
{
    bool isNumber = false;
    const int p = data.data(Format).toInt(&isNumber);
    return isNumber ? std::optional(p) : std::nullopt;
}

} // namespace quorvik
