#pragma once

#include <QString>

namespace quorvik
{

/** Verbs of a file association beyond "open"; the program asks for none. */
struct AssociationVerbs {
    bool print = false;
    bool add = false;
    bool create = false;
    bool defaultIcon = false;
};

/**
 * Ties a file name extension to a program in the desktop's databases of applications and file types under the
 * user's data folder. What is stored already is left alone. A failure is traced and nothing more.
 */
class cRegistry
{
public:
    /** @param dataHome the user's data folder. */
    explicit cRegistry(QString dataHome);

    /**
     * @param programPath whole path of the program.
     * @param className name of the class of files, which is also the program's name.
     * @param classText what the user reads for such a file.
     * @param extension without the point; the case of its letters does not matter.
     */
    void CreateEXEAssociation(const QString &programPath, const QString &className, const QString &classText,
                              const QString &extension, AssociationVerbs verbs = {}) const;

private:
    QString dataHome_;
};

} // namespace quorvik
