#pragma once

#include <QString>
#include <QStringList>

class QWidget;

namespace quorvik
{

/** Shows help topics. A topic is the name of a page of the help file, such as "Velocity Loop.htm". */
class HTMLHelp
{
public:
    virtual ~HTMLHelp() = default;

    virtual void DisplayTopic(const QString &topic, QWidget *owner) = 0;
    /** Shows a topic at the words that it was found by. */
    virtual void DisplayFound(const QString &topic, const QStringList &words, QWidget *owner) = 0;
    /** Shows what the help says to a message of the program.
     * @param text the message as it was shown, whatever stands in it for this case. */
    virtual void DisplayMessage(const QString &text, QWidget *owner) = 0;
    virtual void DisplayContents(QWidget *owner) = 0;
    virtual void DisplaySearch(QWidget *owner) = 0;
    /** Closes the viewer. */
    virtual void Close() = 0;
};

} // namespace quorvik
