#pragma once

namespace ormund {

class CBitmap;

// The skin's bitmaps, shared by all editors of the process: the first reference makes them, the
// last one frees them. Screen thread alone.
class BitmapTable {
public:
    static constexpr int kFirst = 1000;
    static constexpr int kCount = 148;

    BitmapTable();
    ~BitmapTable();
    BitmapTable(const BitmapTable&) = delete;
    BitmapTable& operator=(const BitmapTable&) = delete;

    // Null for an id outside 1000 to 1147, and while nobody holds a reference.
    static CBitmap* get(int id);
    static int references();
};

} // namespace ormund
