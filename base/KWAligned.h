// Objects that hold arrays for eight lanes at a time and are made with `new`.
#pragma once

namespace ormund {

class alignas(32) KWAligned { };

} // namespace ormund
