#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// A document package in the making: written as readable text, zipped when a test needs the file.
///
/// The text holds the parts one after another, each after a line "=== <name>":
///
///     === Resources/Fonts.xml
///     <FontFamily Name="Lato"><Font FontStyleName="Bold" PostScriptName="Lato-Bold"/></FontFamily>
///     === Stories/Story_u1.xml
///     <ParagraphStyleRange AppliedParagraphStyle="ParagraphStyle/Body"> ... </ParagraphStyleRange>
///
/// What every part of its kind has around it is added, unless the text begins with "<?xml" and is then taken
/// as it stands: the root element of fonts, styles, spreads and stories, and for "Stories/Story_<self>.xml"
/// the Story element. A part "designmap.xml" that isn't there is made: it names all parts in their order and
/// lists the stories likewise. The part "mimetype" is made as well.
class IdmlFixture {
 public:
  IdmlFixture() = default;
  explicit IdmlFixture(std::string_view text);

  /// Adds or replaces a part, as it stands.
  IdmlFixture& Set(const std::string& name, std::string bytes);
  /// The same with what belongs around it.
  IdmlFixture& SetBody(const std::string& name, std::string_view body);
  /// Leaves out a part, also one of those that would be made; the design map still names it.
  IdmlFixture& Remove(const std::string& name);

  /// Writes the package and returns its path. Throws std::runtime_error when it can't.
  std::string Write(const std::string& path) const;

 private:
  std::string DesignMap() const;

  std::vector<std::pair<std::string, std::string>> m_vParts;
  std::vector<std::string> m_vRemoved;
};
