#include "OpenReport.h"

#include <algorithm>
#include <cstdio>
#include <set>
#include <utility>

#include "Amount.h"
#include "JsonText.h"
#include "Utf8Text.h"

namespace {

// Each text once: a file that is placed ten times is still one file.
template <typename List, typename Name>
std::string Joined(const List& list, Name name) {
  std::string text;
  std::set<std::string> seen;
  for (const auto& element : list) {
    if (seen.insert(name(element)).second) text += (text.empty() ? "" : ", ") + name(element);
  }
  return PrintableText(text);
}

std::string Same(const std::string& text) {
  return text;
}

std::string PostScriptName(const headless::HeadlessHost::UsedFont& font) {
  return font.postScriptName;
}

}  // namespace

OpenReport::OpenReport(const Host& host, Host::DocumentID document, std::string path)
    : m_path(std::move(path)),
      m_usedFonts(host.UsedFonts(document)),
      m_alert(host.AlertAtOpen(document)),
      m_activity(host.Activity(document)) {}

void OpenReport::SetClosed(const Host& host, Host::DocumentID document) {
  m_activity.deactivated = host.Activity(document).deactivated;
}

bool OpenReport::HasActivated() const {
  return std::any_of(m_activity.matched.begin(), m_activity.matched.end(),
                     [](const auto& font) { return !font.wasActive; });
}

void OpenReport::PrintOpened() const {
  const auto active = std::count_if(m_activity.matched.begin(), m_activity.matched.end(),
                                    [](const auto& font) { return font.wasActive; });
  std::printf("%s: %s used, %zu activated, %zu active before, %zu missing\n", PrintableText(m_path).c_str(),
              Amount(m_usedFonts.size(), "font").c_str(),
              m_activity.matched.size() - static_cast<size_t>(active), static_cast<size_t>(active),
              m_activity.problems.size());
  for (const Host::UsedFont& font : m_usedFonts) PrintFont(font);
  PrintOtherProblems();
  PrintAlert();
}

void OpenReport::PrintFont(const Host::UsedFont& font) const {
  const std::string& name = font.postScriptName;
  const auto matched = std::find_if(m_activity.matched.begin(), m_activity.matched.end(),
                                    [&name](const auto& entry) { return entry.postScriptName == name; });
  const bool problem =
      std::find(m_activity.problems.begin(), m_activity.problems.end(), name) != m_activity.problems.end();
  std::string state = font.available ? "not asked for, the host has it" : "not asked for, the host lacks it";
  if (problem) state = "missing";
  if (matched != m_activity.matched.end()) {
    state = (matched->wasActive ? "was active" : "activated") + std::string(" (font ") +
            std::to_string(matched->databaseID) + ")";
  }
  std::printf("  %-40s %s\n", PrintableText(name).c_str(), state.c_str());
}

void OpenReport::PrintOtherProblems() const {
  for (const std::string& name : m_activity.problems) {
    const bool used = std::any_of(m_usedFonts.begin(), m_usedFonts.end(),
                                  [&name](const auto& font) { return font.postScriptName == name; });
    if (!used) std::printf("  %-40s missing, looked for under this name too\n", PrintableText(name).c_str());
  }
}

void OpenReport::PrintAlert() const {
  if (m_alert.suppressed) {
    std::puts("  The host's alerts stay quiet: every font is there or on its way.");
    return;
  }
  if (!m_alert.IsShown()) {
    std::puts("  The host has nothing to alert about.");
    return;
  }
  std::printf("  The host shows its alert.");
  if (!m_alert.missingFonts.empty()) {
    std::printf(" Missing fonts: %s.", Joined(m_alert.missingFonts, PostScriptName).c_str());
  }
  if (!m_alert.missingLinks.empty())
    std::printf(" Missing links: %s.", Joined(m_alert.missingLinks, Same).c_str());
  if (!m_alert.outOfDateLinks.empty()) {
    std::printf(" Links out of date: %s.", Joined(m_alert.outOfDateLinks, Same).c_str());
  }
  std::printf("\n");
}

void OpenReport::PrintClosed() const {
  if (m_activity.deactivated.empty()) {
    std::printf("%s closed: no font given back\n", PrintableText(m_path).c_str());
    return;
  }
  std::printf("%s closed: %s given back: %s\n", PrintableText(m_path).c_str(),
              Amount(m_activity.deactivated.size(), "font").c_str(),
              Joined(m_activity.deactivated, Same).c_str());
}

void OpenReport::PrintJson() const {
  JsonText json;
  json.BeginObject().Key("document").String(m_path);
  json.Key("usedFonts").BeginArray();
  for (const Host::UsedFont& font : m_usedFonts) json.String(font.postScriptName);
  json.EndArray().Key("matched").BeginArray();
  for (const auto& font : m_activity.matched) {
    json.BeginObject();
    json.Key("postScriptName").String(font.postScriptName);
    json.Key("databaseID").Integer(font.databaseID);
    json.Key("wasActive").Boolean(font.wasActive);
    json.EndObject();
  }
  json.EndArray().Key("problems").BeginArray();
  for (const std::string& name : m_activity.problems) json.String(name);
  json.EndArray().Key("alertsSuppressed").Boolean(m_alert.suppressed);
  json.Key("deactivated").BeginArray();
  for (const std::string& name : m_activity.deactivated) json.String(name);
  json.EndArray().EndObject();
  std::puts(json.Text().c_str());
}
