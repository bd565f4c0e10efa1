#pragma once

namespace kiln {

/// What a handler of requests made of a message.
enum class Handling {
  kNotMine,  ///< another handler's
  kDone,     ///< error and body of the reply are filled in
  kLater,    ///< the handler sends progress and the final reply by itself
};

}  // namespace kiln
