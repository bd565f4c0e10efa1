#include "kiln/activation/ActivationChange.h"

namespace kiln {

wire::FontPlace PlaceOf(const wire::Font& font, bool local) {
  wire::FontPlace place;
  place.set_font_id(font.id());
  place.set_postscript_name(font.postscript_name());
  place.set_path(local ? font.path() : font.link_path());
  place.set_face_index(font.face_index());
  return place;
}

}  // namespace kiln
