-- Runs in Ardour's Lua session tool: puts Ormund on a MIDI track, records its MIDI on a second track
-- and its sound on a third while the transport rolls, then saves, loads and compares the state.
-- ardour.sh starts it; the folder of the session is its argument.
local folder = arg and arg[1] or os.getenv("ORMUND_SESSION")
local seconds = tonumber(os.getenv("ORMUND_SECONDS") or "8")

local backend = AudioEngine:set_backend("None (Dummy)", "", "")
backend:set_device_name("Normal Speed")

local session = create_session(folder, "ormund", 48000)
assert(session, "no session")

local info = ARDOUR.LuaAPI.new_plugin_info("Ormund",
    ARDOUR.PluginType[os.getenv("ORMUND_FORMAT") or "LXVST"])
assert(not info:isnil(), "Ormund was not found: is it scanned?")

local midi = ARDOUR.ChanCount(ARDOUR.DataType("midi"), 1)
local stereo = ARDOUR.ChanCount(ARDOUR.DataType("audio"), 2)
local last = ARDOUR.PresentationInfo.max_order
local mode = ARDOUR.TrackMode.Normal

local player = session:new_midi_track(midi, stereo, false, info, nil, nil, 1, "Player", last, mode,
    false, false):front()
local notes = session:new_midi_track(midi, midi, false, ARDOUR.PluginInfo(), nil, nil, 1, "Notes",
    last, mode, false, false):front()
local sound = session:new_audio_track(2, 2, nil, 1, "Sound", last, mode, false):front()
sleep(1)

local plugin = player:to_track():to_route():nth_plugin(0)
assert(not plugin:isnil(), "no plug-in on the track")
local insert = plugin:to_insert()
print("plug-in:", insert:plugin(0):name(), "by", insert:plugin(0):maker(), "parameters",
    insert:plugin(0):parameter_count())
print("outputs:", player:output():n_ports():n_audio(), "audio,",
    player:output():n_ports():n_midi(), "MIDI")

for channel = 0, 1 do
    player:output():audio(channel):connect(sound:input():audio(channel):name())
end
player:output():midi(0):connect(notes:input():midi(0):name())

for _, track in ipairs({notes, sound}) do
    track:rec_enable_control():set_value(1, PBD.GroupControlDisposition.NoGroup)
end
session:goto_start(false)
session:maybe_enable_record(false)
sleep(1)
session:request_roll(ARDOUR.TransportRequestSource.TRS_UI)
sleep(seconds)
session:request_stop(false, false, ARDOUR.TransportRequestSource.TRS_UI)
sleep(2)

local function report(track, kind)
    for region in track:playlist():region_list():iter() do
        print("recorded", kind, region:name(), region:length():samples(), "samples")
        if kind == "MIDI" then
            local count = 0
            local model = region:to_midiregion():midi_source(0):model()
            for note in ARDOUR.LuaAPI.note_list(model):iter() do
                count = count + 1
                if count <= 8 then
                    print("note", note:time():str(), note:note(), note:velocity(),
                        note:length():str())
                end
            end
            print("notes", count)
        else
            print("peak", region:to_audioregion():maximum_amplitude(nil))
        end
    end
end
report(notes, "MIDI")
report(sound, "audio")

-- The state travels with the session: a changed root key must be there after a load. Where it stands
-- among the controls differs from format to format.
local function find_control(name)
    local count = 0
    local instance = insert:plugin(0)
    for i = 0, instance:parameter_count() - 1 do
        if instance:parameter_is_control(i) and instance:parameter_is_input(i) then
            if instance:parameter_label(i) == name then
                return count
            end
            count = count + 1
        end
    end
end
local rootKey = assert(find_control("Root_Key"), "no root key")
ARDOUR.LuaAPI.set_processor_param(plugin, rootKey, 0.75)
sleep(1)
session:save_state("", false, false, false, false, false)
close_session()
session = load_session(folder, "ormund")
local again = session:route_by_name("Player"):nth_plugin(0)
local value = ARDOUR.LuaAPI.get_processor_param(again, rootKey)
print("root key after a load", value)
-- What was recorded is not to be heard in the export that follows, only the plug-in itself. The
-- process thread mutes, so what is saved at once may lack it.
session:route_by_name("Sound"):mute_control():set_value(1, PBD.GroupControlDisposition.NoGroup)
sleep(1)
session:save_state("", false, false, false, false, false)
close_session()
print("done")
