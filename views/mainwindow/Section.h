// The sections of the main window, in their order.
#pragma once

#include <QObject>
#include <QString>
#include <array>
#include <memory>
#include <optional>

namespace quillmere {

struct ViewServices;

enum class Section { mixer, profiles, activity, duck, focus, settings };

inline constexpr std::array allSections{Section::mixer, Section::profiles, Section::activity,
                                        Section::duck,  Section::focus,    Section::settings};

/// "Auto-Duck": what requests for a section name it by.
[[nodiscard]] QString rawValue(Section section);
[[nodiscard]] std::optional<Section> sectionOf(const QString& rawValue);
/// The raw value in the user's language.
[[nodiscard]] QString titleOf(Section section);
/// The name of a symbol.
[[nodiscard]] QString symbolOf(Section section);
/// The QML component that shows the section, which has a property "presenter".
[[nodiscard]] QString canvasOf(Section section);
/// What the section's component shows.
[[nodiscard]] std::unique_ptr<QObject> makeCanvasPresenter(Section section, const ViewServices& services);

}  // namespace quillmere
