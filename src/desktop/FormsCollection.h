#pragma once

#include <QList>
#include <QObject>
#include <QWidget>

namespace quorvik
{

/** The application's open windows in the order of their loading; the main window is entry 0. */
class FormsCollection : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /** Adds a window; it leaves the collection when it is destroyed, at the latest. */
    void Add(QWidget *form);
    /** Does nothing for a window that is not in the collection. */
    void Remove(QWidget *form);

    int Count() const { return int(forms_.size()); }
    QWidget *At(int position) const { return forms_.at(position); }

    /** Position of the last window from 1 on whose caption is the text, or 0. */
    int FindOpenBlock(const QString &caption) const;

private:
    QList<QWidget *> forms_;
};

} // namespace quorvik
