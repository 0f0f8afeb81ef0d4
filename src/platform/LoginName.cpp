#include "platform/LoginName.h"

#include <array>
#include <pwd.h>
#include <unistd.h>

namespace quorvik
{

QString LoginName()
{
    std::array<char, 4096> texts = {};
    struct passwd user = {};
    struct passwd *found = nullptr;
    if (::getpwuid_r(::getuid(), &user, texts.data(), texts.size(), &found) != 0 || found == nullptr)
        return {};
    return QString::fromLocal8Bit(found->pw_name);
}

} // namespace quorvik
