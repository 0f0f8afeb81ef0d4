#pragma once

#include <QString>
#include <exception>

namespace quorvik
{

/**
 * The general run-time failure: an overflow, an index outside a table, a failed conversion.
 *
 * It ends the handler that ran into it and nothing else; Guarded() is where it is caught and told.
 */
class RuntimeFailure : public std::exception
{
public:
    /** @param sentence what went wrong, as one plain sentence for the user. */
    explicit RuntimeFailure(QString sentence);

    const QString &Sentence() const { return sentence_; }
    /** The same failure, said of something: "name: sentence". */
    RuntimeFailure About(const QString &name) const;
    const char *what() const noexcept override { return utf8_.constData(); }

private:
    QString sentence_;
    QByteArray utf8_;
};

} // namespace quorvik
