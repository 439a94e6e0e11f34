#include "hosts/desktop/JsonFile.h"

#include <QFile>
#include <QJsonDocument>
#include <QSaveFile>

#include <cstdio>

namespace desktop {

QJsonObject JsonFile::read() const {
  QFile file(path_);
  if (!file.exists()) return {};
  if (!file.open(QIODevice::ReadOnly)) {
    complain("cannot read", file.errorString());
    return {};
  }
  QJsonParseError error{};
  const auto document = QJsonDocument::fromJson(file.readAll(), &error);
  if (document.isObject()) return document.object();
  complain("set aside, being damaged:", error.errorString());
  const QString aside = path_ + QStringLiteral(".damaged");
  QFile::remove(aside);
  file.rename(aside);
  return {};
}

void JsonFile::write(const QJsonObject& contents) const {
  QSaveFile file(path_);
  if (!file.open(QIODevice::WriteOnly) || file.write(QJsonDocument(contents).toJson()) < 0 || !file.commit()) {
    complain("cannot write", file.errorString());
  }
}

void JsonFile::complain(const char* trouble, const QString& reason) const {
  std::fprintf(stderr, "%s %s %s: %s\n", trouble, subject_, qPrintable(path_), qPrintable(reason));
}

}  // namespace desktop
