#pragma once

#include <QString>
#include <QStringList>
#include <initializer_list>

/** The tables of a recording's file. */
namespace quorvik::TrendTables
{

inline constexpr int Version = 1;
/** Tells SQLite's tools whose file it is: "QVKt". */
inline constexpr int ApplicationId = 0x51564b74;

/** A longer text is cut. */
inline constexpr qsizetype MostText = 20'000;

/** What is written for a text: what comes back when it is read. */
QString Written(const QString &text);

/** Makes the tables, in order. */
const QStringList &Statements();

/** What is written with a row, so that a value that changed by itself is found. */
int CheckOf(std::initializer_list<qint64> numbers, const QString &text = {});

} // namespace quorvik::TrendTables
