#include "data/music/MidiFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

namespace ormund {

using testing::ElementsAre;
using testing::SizeIs;

namespace {

using Bytes = std::vector<uint8_t>;
using Result = MidiFile::ReadResult;

Bytes fileOf(int form, int division, std::initializer_list<Bytes> tracks)
{
    Bytes file = {'M', 'T', 'h', 'd', 0, 0, 0, 6, 0, static_cast<uint8_t>(form), 0,
        static_cast<uint8_t>(tracks.size()), static_cast<uint8_t>(division >> 8),
        static_cast<uint8_t>(division)};
    for (const Bytes& track : tracks) {
        const Bytes head = {'M', 'T', 'r', 'k', 0, 0, static_cast<uint8_t>(track.size() >> 8),
            static_cast<uint8_t>(track.size())};
        file.insert(file.end(), head.begin(), head.end());
        file.insert(file.end(), track.begin(), track.end());
    }
    return file;
}

MidiFile example()
{
    MidiFile piece;
    piece.name = "Example";
    piece.beatsPerBar = 3;
    piece.tempos = {{0, 120.0}, {1920, 90.0}};
    piece.events = {{0, {0x90, 60, 100}, 3}, {480, {0xb0, 1, 5}, 3}, {960, {0x90, 60, 0}, 3},
        {200000, {0xc0, 7, 0}, 2}};
    piece.endTick = 300000;
    return piece;
}

TEST(MidiFile, WhatIsWrittenIsReadBack)
{
    const MidiFile piece = example();
    MidiFile back;
    ASSERT_EQ(back.read(piece.write()), Result::Ok);
    EXPECT_EQ(back.events, piece.events);
    EXPECT_EQ(back.name, piece.name);
    EXPECT_EQ(back.beatsPerBar, 3);
    EXPECT_EQ(back.ticksPerBeat, 960);
    EXPECT_EQ(back.lastTick(), 300000u);
    EXPECT_DOUBLE_EQ(back.tempoAt(1.99), 120.0);
    EXPECT_NEAR(back.tempoAt(2.0), 90.0, 1e-4);
}

TEST(MidiFile, TracksMergeInTimeAndRunningStatusGoesOn)
{
    const Bytes conductor = {0, 0xff, 0x51, 3, 0x07, 0xa1, 0x20, 0, 0xff, 0x2f, 0};
    const Bytes melody = {0, 0x90, 60, 100, 96, 62, 100, 0x81, 0x40, 60, 0, 0, 0xff, 0x2f, 0};
    const Bytes wheel = {96, 0xe0, 0, 64, 0, 0xf0, 3, 1, 2, 0xf7, 0, 0xd0, 9, 0, 0xff, 0x2f, 0};
    MidiFile piece;
    ASSERT_EQ(piece.read(fileOf(1, 96, {conductor, melody, wheel})), Result::Ok);
    EXPECT_THAT(piece.events,
        ElementsAre(MidiFileEvent{0, {0x90, 60, 100}, 3}, MidiFileEvent{96, {0x90, 62, 100}, 3},
            MidiFileEvent{96, {0xe0, 0, 64}, 3}, MidiFileEvent{96, {0xd0, 9, 0}, 2},
            MidiFileEvent{288, {0x90, 60, 0}, 3}));
    EXPECT_DOUBLE_EQ(piece.tempoAt(0), 120.0);
    EXPECT_DOUBLE_EQ(piece.beatOf(288), 3.0);
}

TEST(MidiFile, RefusesWhatItCannotPlay)
{
    const Bytes end = {0, 0xff, 0x2f, 0};
    const struct {
        Bytes file;
        Result result;
    } rows[] = {
        {{}, Result::NotMidi}, {{'R', 'I', 'F', 'F', 0, 0, 0, 0}, Result::NotMidi},
        {fileOf(2, 96, {end}), Result::UnsupportedForm},
        {fileOf(0, 0xe728, {end}), Result::UnsupportedForm}, {fileOf(0, 0, {end}), Result::Damaged},
        {fileOf(0, 96, {{0, 60, 100}}), Result::Damaged},         // data without a status
        {fileOf(0, 96, {{0, 0x90, 60}}), Result::Damaged},        // cut in a message
        {fileOf(0, 96, {{0, 0x90, 60, 0x90}}), Result::Damaged},  // status where data belongs
        {fileOf(0, 96, {{0, 0xf4}}), Result::Damaged},            // no such message in a file
        {fileOf(0, 96, {{0, 0xff, 1, 0x7f, 1}}), Result::Damaged} // text longer than the track
    };
    for (size_t i = 0; i < std::size(rows); ++i) {
        MidiFile piece = example();
        EXPECT_EQ(piece.read(rows[i].file), rows[i].result) << "row " << i;
        EXPECT_THAT(piece.events, SizeIs(0)) << "row " << i;
    }
}

TEST(MidiFile, DamageNeverReadsOutsideOrGrowsWithoutBound)
{
    const Bytes whole = example().write();
    MidiFile piece;
    for (size_t length = 0; length < whole.size(); ++length) {
        const Bytes cut(whole.begin(), whole.begin() + static_cast<long>(length));
        piece.read(cut);
        EXPECT_LE(piece.events.size(), length);
    }
    std::mt19937 random(7);
    for (int round = 0; round < 20000; ++round) {
        Bytes bytes = whole;
        for (int i = 0; i < 3; ++i)
            bytes[random() % bytes.size()] = static_cast<uint8_t>(random());
        piece.read(bytes);
        ASSERT_LE(piece.events.size(), bytes.size());
        ASSERT_LE(piece.lastTick(), 1u << 28);
    }
}

} // namespace

} // namespace ormund
