#pragma once

#include <QLoggingCategory>

/**
 * The engine's trace: one line for each of its decisions, in the category quorvik.link, for developers. Off
 * until the category is enabled, and not there at all in release builds.
 */
namespace quorvik
{

Q_DECLARE_LOGGING_CATEGORY(linkTrace)

#if defined(QT_NO_DEBUG) || defined(NDEBUG)
#define QUORVIK_LINK_TRACE QT_NO_QDEBUG_MACRO().nospace().noquote
#else
#define QUORVIK_LINK_TRACE qCDebug(quorvik::linkTrace).nospace().noquote
#endif

} // namespace quorvik
