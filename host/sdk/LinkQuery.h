#pragma once

/// Which links of a document are wanted; one just made wants them all.
class LinkQuery {};
