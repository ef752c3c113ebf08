// How the choice grids are laid out, for the one who draws them and the one who finds the cell
// under the mouse.
#pragma once

namespace ormund {

struct ChoiceGrid {
    int bitmap;
    int columns;
    int rows;
    int values; // that many cells are filled, row by row

    static constexpr int kCell = 18; // width and height of a cell
    static constexpr int kLeft = 3;  // of the first cell
    static constexpr int kTop = 2;
    constexpr int width() const { return columns * kCell + 2 * kLeft; }
    constexpr int height() const { return rows * kCell + 2 * kTop; }
};

inline constexpr ChoiceGrid kChoiceGrids[] = {
    {1086, 4, 1, 4},   // octave
    {1087, 8, 3, 20},  // pitch bend
    {1088, 12, 5, 54}, // chord: two inversions of a family in a row
    {1089, 6, 3, 18},  // arpeggio: a family in a row
    {1090, 9, 2, 17},  // random
    {1092, 8, 2, 16},  // pattern, repeats
    // Without a picture: their cells are those of the line.
    {1586, 10, 11, 101}, // chance
    {1587, 7, 6, 42},    // condition
    {1588, 6, 4, 22},    // ratchet
    {1589, 8, 2, 16},    // late
    {1590, 6, 5, 25},    // strum
};

} // namespace ormund
