#include "editor/BitmapTable.h"

#include "skin/SkinProvider.h"
#include "view/CBitmap.h"

#include <array>

namespace ormund {

namespace {

struct SharedBitmaps {
    std::array<CBitmap*, BitmapTable::kCount> bitmaps{};
    int references = 0;
};

// All windows of a process live on its one screen thread, so a plain count is enough.
SharedBitmaps shared;

} // namespace

BitmapTable::BitmapTable()
{
    if (shared.references++ > 0)
        return;
    SkinProvider::install();
    for (int i = 0; i < kCount; ++i)
        shared.bitmaps[size_t(i)] = new CBitmap(kFirst + i);
}

BitmapTable::~BitmapTable()
{
    if (--shared.references > 0)
        return;
    for (CBitmap*& bitmap : shared.bitmaps) {
        bitmap->forget();
        bitmap = nullptr;
    }
}

CBitmap* BitmapTable::get(int id)
{
    return id >= kFirst && id < kFirst + kCount ? shared.bitmaps[size_t(id - kFirst)] : nullptr;
}

int BitmapTable::references() { return shared.references; }

} // namespace ormund
