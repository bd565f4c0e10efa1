#include "JsonText.h"

#include "Utf8Text.h"

void JsonText::Free::operator()(yajl_gen_t* generator) const {
  yajl_gen_free(generator);
}

JsonText::JsonText() : m_generator(yajl_gen_alloc(nullptr)) {
  yajl_gen_config(m_generator.get(), yajl_gen_validate_utf8, 1);
}

JsonText& JsonText::BeginObject() {
  yajl_gen_map_open(m_generator.get());
  return *this;
}

JsonText& JsonText::EndObject() {
  yajl_gen_map_close(m_generator.get());
  return *this;
}

JsonText& JsonText::BeginArray() {
  yajl_gen_array_open(m_generator.get());
  return *this;
}

JsonText& JsonText::EndArray() {
  yajl_gen_array_close(m_generator.get());
  return *this;
}

JsonText& JsonText::Key(std::string_view name) {
  return String(name);
}

JsonText& JsonText::String(std::string_view text) {
  const std::string valid = ValidUtf8(text);
  yajl_gen_string(m_generator.get(), reinterpret_cast<const unsigned char*>(valid.data()), valid.size());
  return *this;
}

JsonText& JsonText::Integer(long long number) {
  yajl_gen_integer(m_generator.get(), number);
  return *this;
}

JsonText& JsonText::Boolean(bool value) {
  yajl_gen_bool(m_generator.get(), value ? 1 : 0);
  return *this;
}

std::string JsonText::Text() const {
  const unsigned char* text = nullptr;
  size_t length = 0;
  yajl_gen_get_buf(m_generator.get(), &text, &length);
  return std::string(reinterpret_cast<const char*>(text), length);
}
