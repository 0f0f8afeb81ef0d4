#pragma once

#include <QFile>
#include <QString>
#include <gtest/gtest.h>

namespace quorvik::testing
{

/** The text of a file that must be there. */
inline QString FileText(const QString &path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << "there is no " << qPrintable(path);
    return QString::fromUtf8(file.readAll());
}

} // namespace quorvik::testing
