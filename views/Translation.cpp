// The program's catalogues are compiled in; the toolkit's are its own.
#include "views/Translation.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QTranslator>
#include <memory>

namespace quillmere {

namespace {

/// What was loaded last, which a later choice replaces.
struct Loaded {
  std::unique_ptr<QTranslator> own;
  std::unique_ptr<QTranslator> toolkit;
};

Loaded& loaded() {
  static Loaded translators;
  return translators;
}

/// A catalogue that is there for the language, or for the language without its country; null for none.
std::unique_ptr<QTranslator> find(const QString& catalogue, const QString& language, const QString& folder) {
  auto translator = std::make_unique<QTranslator>();
  return translator->load(catalogue + language, folder) ? std::move(translator) : nullptr;
}

std::unique_ptr<QTranslator> findOwn(const QString& language) {
  return find(QStringLiteral("quillmere_"), language, QStringLiteral(":/quillmere/translations"));
}

void install(std::unique_ptr<QTranslator>& place, std::unique_ptr<QTranslator> translator) {
  // A translator that goes takes itself out.
  place = std::move(translator);
  if (place) QCoreApplication::installTranslator(place.get());
}

}  // namespace

std::string installTranslation(const std::vector<std::string>& languages) {
  // English needs one too, for its plural forms.
  QString language = QStringLiteral("en");
  std::unique_ptr<QTranslator> own;
  for (const auto& wanted : languages) {
    language = QString::fromStdString(wanted);
    own = findOwn(language);
    if (own) break;
  }
  if (!own) {
    language = QStringLiteral("en");
    own = findOwn(language);
  }
  install(loaded().toolkit,
          find(QStringLiteral("qtbase_"), language, QLibraryInfo::path(QLibraryInfo::TranslationsPath)));
  const auto name = own->language().section(u'_', 0, 0).toStdString();
  install(loaded().own, std::move(own));
  return name;
}

}  // namespace quillmere
