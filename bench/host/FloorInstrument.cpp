#include "bench/Floor.h"
#include "bench/host/Instrument.h"

namespace ormund {

namespace {
class FloorInstrument final : public Instrument {
public:
    explicit FloorInstrument(FloorLoop* itsLoop) : loop(itsLoop) { }
    void send(int, int, int) override { }
    void prepare(const Transport&, int) override { }
    void process(int frames) override { loop(state, left, right, frames); }
    int64_t messagesOut() const override { return 0; }

private:
    FloorState state;
    FloorLoop* loop;
};
} // namespace

std::unique_ptr<Instrument> makeFloor()
{
    FloorLoop* loop = floorVector();
    return std::make_unique<FloorInstrument>(loop ? loop : floorScalar);
}

std::unique_ptr<Instrument> makeFilters()
{
    FloorLoop* loop = filterVector();
    return loop ? std::make_unique<FloorInstrument>(loop) : nullptr;
}

} // namespace ormund
