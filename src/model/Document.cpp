#include "model/Document.h"

#include "model/PathFunctions.h"
#include "platform/Asker.h"
#include "platform/Guard.h"

namespace quorvik
{

Document::Document(const ParameterTable &table)
{
    On(&table.Signals(), &TableSignals::Entered, this, [this](int p, bool modified) {
        if (p != Param::SaveParameters && p != Param::LoadParameters) {
            FileModified = modified;
            DriveModified = modified;
            HasUnsavedEdits |= modified;
        }
        UpdateTitle();
    });
}

const QString &Document::Unnamed()
{
    static const QString unnamed = QStringLiteral("unnamed");
    return unnamed;
}

QString Document::Title() const
{
    return AppTitle() + QStringLiteral(" - [") + FileTitle(FileName) +
           (HalfRead ? QStringLiteral(", half read") : QString()) +
           (FileModified ? QStringLiteral("*]") : QStringLiteral("]"));
}

void Document::MarkFile(bool modified)
{
    FileModified = modified;
    HasUnsavedEdits = modified;
    UpdateTitle();
}

void Document::BecomeSaved(const QString &path)
{
    FileName = path;
    MarkFile(false);
    Q_EMIT Saved();
}

void Document::BecomeUnnamed(bool modified)
{
    FileName = Unnamed();
    MarkFile(modified);
}

void Document::BeginAnew()
{
    HalfRead = false;
    Notes.clear();
    BecomeUnnamed(false);
}

void Document::UpdateTitle()
{
    Q_EMIT Marked();
    Q_EMIT TitleChanged(Title());
}

} // namespace quorvik
