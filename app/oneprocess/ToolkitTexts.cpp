// A translator of the toolkit's, behind the program's catalogue.
#include "app/oneprocess/ToolkitTexts.h"

#include <QByteArray>
#include <QTranslator>
#include <map>
#include <memory>

#include "core/Texts.h"

namespace quillmere {

namespace {

/// The catalogue names no context.
constexpr const char* context = "";

std::unique_ptr<QTranslator>& translator() {
  static std::unique_ptr<QTranslator> loaded;
  return loaded;
}

/// Texts live as long as the program.
const char* kept(const QString& text) {
  static std::map<QString, QByteArray> texts;
  return texts.try_emplace(text, text.toUtf8()).first->second.constData();
}

const char* find(const char* source) {
  const auto text = translator() ? translator()->translate(context, source) : QString();
  return text.isEmpty() ? source : kept(text);
}

const char* findCounted(const char* one, const char* many, unsigned long number) {
  const auto text = translator() ? translator()->translate(context, one, nullptr, static_cast<int>(number)) : QString();
  if (text.isEmpty()) return number == 1 ? one : many;
  return kept(text);
}

constexpr TextCatalogue catalogue{find, findCounted};

}  // namespace

void useToolkitTexts(const std::vector<std::string>& languages) {
  translator().reset();
  for (const auto& language : languages) {
    // English is what the texts are written in.
    if (language == "en" || language.starts_with("en_")) break;
    auto loaded = std::make_unique<QTranslator>();
    if (!loaded->load(QStringLiteral("tray_") + QString::fromStdString(language),
                      QStringLiteral(":/quillmere/oneprocess"))) {
      continue;
    }
    translator() = std::move(loaded);
    break;
  }
  useTexts(&catalogue);
}

}  // namespace quillmere
