#pragma once

#include <yajl/yajl_gen.h>

#include <memory>
#include <string>
#include <string_view>

/// Writes one JSON text (RFC 8259) on one line. Values come in the order in which they are to stand; inside
/// an object every value follows its Key(). Text that isn't UTF-8 is written with U+FFFD in place of what
/// can't be read, so that the line stays valid whatever a file was called.
///
/// Thread: one at a time.
class JsonText {
 public:
  JsonText();

  JsonText& BeginObject();
  JsonText& EndObject();
  JsonText& BeginArray();
  JsonText& EndArray();
  JsonText& Key(std::string_view name);
  JsonText& String(std::string_view text);
  JsonText& Integer(long long number);
  JsonText& Boolean(bool value);

  /// What has been written so far, without a line end.
  std::string Text() const;

 private:
  struct Free {
    void operator()(yajl_gen_t* generator) const;
  };
  std::unique_ptr<yajl_gen_t, Free> m_generator;
};
