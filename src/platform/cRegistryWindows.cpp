#include "platform/cRegistry.h"

#include <QtGlobal>

#ifdef Q_OS_WIN

#include <QDebug>
#include <QSettings>
#include <utility>

namespace quorvik
{

namespace
{

struct RegistryValue {
    QString key;
    QString value;
};

QString Command(const QString &programPath, const QString &switches)
{
    return QStringLiteral("\"%1\"%2 \"%3\"").arg(programPath, switches, QStringLiteral("%1"));
}

void AddVerb(QList<RegistryValue> &values, const QString &shell, const QString &verb, const QString &caption,
             const QString &command)
{
    values.append({shell + verb, caption});
    values.append({shell + verb + QStringLiteral("/command"), command});
}

} // namespace

cRegistry::cRegistry(QString dataHome)
    : dataHome_(std::move(dataHome))
{
}

void cRegistry::CreateEXEAssociation(const QString &programPath, const QString &className,
                                     const QString &classText, const QString &extension,
                                     AssociationVerbs verbs) const
{
    const QString shell = className + QStringLiteral("/shell/");
    QList<RegistryValue> values{{u'.' + extension, className}, {className, classText}};
    AddVerb(values, shell, QStringLiteral("open"), QStringLiteral("&Open"), Command(programPath, {}));
    if (verbs.print)
        AddVerb(values, shell, QStringLiteral("print"), QStringLiteral("&Print"),
                Command(programPath, QStringLiteral(" /p")));
    if (verbs.add)
        AddVerb(values, shell, QStringLiteral("add"), QStringLiteral("&Add"),
                Command(programPath, QStringLiteral(" /a")));
    if (verbs.create)
        AddVerb(values, shell, QStringLiteral("new"), QStringLiteral("&New"),
                Command(programPath, QStringLiteral(" /n")));
    if (verbs.defaultIcon)
        values.append({className + QStringLiteral("/DefaultIcon"), programPath + QStringLiteral(",0")});

    for (const char *root : {"HKEY_CLASSES_ROOT", "HKEY_LOCAL_MACHINE\\SOFTWARE\\Classes"}) {
        QSettings registry(QString::fromLatin1(root), QSettings::NativeFormat);
        for (const RegistryValue &value : values) {
            const QString key = value.key + QStringLiteral("/.");
            if (registry.value(key).toString() != value.value)
                registry.setValue(key, value.value);
        }
        registry.sync();
        if (registry.status() != QSettings::NoError)
            qWarning() << "File association not written under" << root;
    }
}

} // namespace quorvik

#endif
