#include <Vokit/FileEncrypt>

namespace vo {

FileEncrypt::FileEncrypt() = default;

FileEncrypt::FileEncrypt(const QString &name)
    : QFile(name)
{}

FileEncrypt::~FileEncrypt() = default;

} // namespace vo
