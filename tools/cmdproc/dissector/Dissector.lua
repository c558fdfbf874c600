-- A Wireshark dissector for the commands of the command processor, protocol "cmdproc".
-- Written by "cmdproc dissector": the table of commands is made from the classes' own field lists.
--
-- ########################################################################################################
-- ##  A CAPTURE SHOWS SECRETS, WHATEVER THIS PLUGIN DOES. Passwords, PINs, session ids and the bytes of  ##
-- ##  the secure channel travel in the packets, and the bytes of a packet cannot be hidden: everybody    ##
-- ##  who has the capture reads them in the packet bytes, in "Follow TCP Stream" and in every export     ##
-- ##  that has raw bytes (PDML, -x, JSON with -x). Here they are *** in the tree, and no text to filter  ##
-- ##  by, unless the preference "Show secrets" is switched on; that guards against glances, not readers. ##
-- ########################################################################################################
--
-- To use it, put this file into a folder for plugins (Help, About Wireshark, Folders: Personal Lua Plugins), or start
-- with  wireshark -X lua_script:cmdproc.lua . Then say which TCP ports carry commands: in the protocol's preferences,
-- with  -o cmdproc.tcp_ports:4000-4009 , or by Decode As. Captures of exported PDUs that name "cmdproc" need nothing.
--
-- Filters:
--   cmdproc.command == "ClSitDown"      the class; also cmdproc.family, cmdproc.code, cmdproc.length
--   cmdproc.cl_sit_down                 the same by its own field, below which its fields stand:
--   cmdproc.cl_sit_down.seat_id == 3    names in lower case, records by dots; elements of a list share its name
--   cmdproc.seat == 3                   any seat in any command
--   cmdproc.money > 10000               any amount in any command; amounts are in hundredths
--   cmdproc.game_id == 17               any number of a game, table or tournament
--   cmdproc.problem                     what cannot be read: command, field, byte, bytes left

-- One entry a command: name, key (the name as it stands in filters), family, code, batch (it holds compressed
-- commands), fields. A field:
--   name, key, type
--   size      of bytes and zeros without a count, and of packed records; of strings the most characters, 0 for no bound
--   count     the type of the number in front of a list, a map or bytes; below_one: a signed one below 1 means none
--   most      elements that a list may have
--   counted   the earlier number that is the list's count
--   when      the earlier numbers that it hangs on, all of them: field, and either is (true, false) or has (bits)
--   keep      a later field hangs on this number
--   mask      its bits in a flags byte
--   secret    not to be shown
--   shared    the field for filters over all commands that repeats its value
--   fields    of a record; the element of a list; key and value of a map
local COMMANDS = {} --@commands@

local LENGTH_SLOT = 4
local SHORTEST_FRAME = 6
local LARGEST_BATCH = 1024 * 1024

local cmdproc = Proto("cmdproc", "Poker commands")

cmdproc.prefs.tcp_ports = Pref.range("TCP ports", "", "The TCP ports that commands travel on, such as 4000-4009,5000",
  65535)
cmdproc.prefs.longest = Pref.uint("Longest frame", 1024 * 1024,
  "A length above so many bytes is taken for a stream that is out of step")
cmdproc.prefs.show_secrets = Pref.bool("Show secrets", false,
  "Show passwords, PINs and secure-channel bytes in clear, and as text to filter by")

-- Fields and expert infos ---------------------------------------------------------------------------------------------

local FAMILIES = {
  [0] = "connection", "server", "client", "server tournament", "client tournament", "server misc", "client misc"
}

local own = {
  command = ProtoField.string("cmdproc.command", "command"),
  length = ProtoField.uint32("cmdproc.length", "length"),
  family = ProtoField.uint8("cmdproc.family", "family", base.DEC, FAMILIES),
  code = ProtoField.uint8("cmdproc.code", "code"),
  problem = ProtoField.string("cmdproc.problem", "problem"),
}
-- Hidden: the values stand in the commands' own fields.
local shared = {
  seat = ProtoField.uint8("cmdproc.seat", "seat"),
  money = ProtoField.int64("cmdproc.money", "money"),
  game_id = ProtoField.uint32("cmdproc.game_id", "game, table or tournament"),
}
local marks = {
  malformed = ProtoExpert.new("cmdproc.expert.malformed", "A command that cannot be read", expert.group.MALFORMED,
    expert.severity.ERROR),
  unknown = ProtoExpert.new("cmdproc.expert.unknown", "No command has this family and code", expert.group.UNDECODED,
    expert.severity.ERROR),
  framing = ProtoExpert.new("cmdproc.expert.framing", "No frame", expert.group.MALFORMED, expert.severity.ERROR),
  batch = ProtoExpert.new("cmdproc.expert.batch", "A batch that cannot be unpacked", expert.group.MALFORMED,
    expert.severity.ERROR),
  cut = ProtoExpert.new("cmdproc.expert.cut", "The capture does not have all of this command", expert.group.UNDECODED,
    expert.severity.NOTE),
}
cmdproc.experts = { marks.malformed, marks.unknown, marks.framing, marks.batch, marks.cut }

local SUITS = { [0] = "none", "Club", "Diamond", "Heart", "Spade" }
local RANKS = {
  [0] = "none", "Ace", "Two", "Three", "Four", "Five", "Six", "Seven", "Eight", "Nine", "Ten", "Jack", "Queen", "King",
  "Ace"
}
local VISIBILITIES = { [1] = "hidden", [3] = "seen by its owner", [4] = "shown" }
local CARD_VALUES = { suit = SUITS, rank = RANKS, visibility = VISIBILITIES }

local WIDTHS = {
  byte = 1, bool = 1, u16 = 2, i16 = 2, u32 = 4, i32 = 4, u64 = 8, i64 = 8, double = 8, money = 8, ["date-time"] = 8
}
local PROTO_FIELDS = {
  byte = "uint8", bool = "bool", u16 = "uint16", i16 = "int16", u32 = "uint32", i32 = "int32", u64 = "uint64",
  i64 = "int64", double = "double", money = "int64", ["date-time"] = "double", string = "stringz", bytes = "bytes",
  card = "uint8", flags = "uint8", record = "none", ["date-time-status"] = "none"
}

-- The walk over a command's bytes -------------------------------------------------------------------------------------
--
-- walk.tvb       holds the frame
-- walk.base      where it begins there
-- walk.position  of the next byte, counted from the base
-- walk.stop      the end of the frame, counted likewise
-- walk.numbers   what later fields hang on, as pairs of name and value, of the records that are open
-- walk.problem   why it cannot go on
-- walk.path      at which field: names, and indexes from 0, innermost first
--
-- A reader puts one field into the tree. It returns false when the bytes cannot be read on. An element of a list has an
-- index.

local readers = {}

local function fail(walk, problem)
  walk.problem = problem
  walk.path = {}
  return false
end

local function left(walk)
  return walk.stop - walk.position
end

local function has_left(walk, size)
  if left(walk) >= size then return true end
  return fail(walk, string.format("takes %.0f bytes, %d are left", size, left(walk)))
end

-- The next bytes as a range; nil when there are fewer.
local function take(walk, size)
  if not has_left(walk, size) then return nil end
  local range = walk.tvb(walk.base + walk.position, size)
  walk.position = walk.position + size
  return range
end

-- The place of what begins here, its length to be set at its end.
local function here(walk)
  return walk.tvb(walk.base + walk.position, 0)
end

-- The value of the nearest earlier number of that name, inner records first.
local function number_named(walk, name)
  local numbers = walk.numbers
  for i = #numbers - 1, 1, -2 do
    if numbers[i] == name then return numbers[i + 1] end
  end
  return 0
end

-- By arithmetic, because versions of Lua differ in their operators on bits.
local function have_common_bit(a, b)
  while a > 0 and b > 0 do
    if a % 2 == 1 and b % 2 == 1 then return true end
    a, b = math.floor(a / 2), math.floor(b / 2)
  end
  return false
end

local function travels(walk, conditions)
  for _, condition in ipairs(conditions) do
    local value = number_named(walk, condition.field)
    if condition.has then
      if not have_common_bit(value, condition.has) then return false end
    elseif (value ~= 0) ~= condition.is then
      return false
    end
  end
  return true
end

local function read_fields(walk, tree, fields)
  local outer = #walk.numbers
  for _, field in ipairs(fields) do
    if (not field.when or travels(walk, field.when)) and not field.read(walk, tree, field) then
      table.insert(walk.path, field.name)
      return false
    end
  end
  for i = #walk.numbers, outer + 1, -1 do walk.numbers[i] = nil end
  return true
end

local function add_shared(tree, field, range)
  if field.shared then tree:add_le(shared[field.shared], range):set_hidden() end
end

local function read_number(walk, tree, field)
  local range = take(walk, field.width)
  if not range then return false end
  tree:add_le(field.proto, range)
  add_shared(tree, field, range)
  if field.keep then
    local numbers = walk.numbers
    numbers[#numbers + 1] = field.name
    numbers[#numbers + 1] = range:le_uint()
  end
  return true
end
for _, kind in ipairs({ "byte", "bool", "u16", "i16", "u32", "i32", "u64", "i64", "double" }) do
  readers[kind] = read_number
end

-- Hundredths as "12.50", "-0.05", "3".
local function money_text(hundredths)
  local sign, digits = string.match(tostring(hundredths), "^(-?)(%d+)$")
  digits = string.rep("0", 3 - #digits) .. digits
  local cents = string.sub(digits, -2)
  local text = string.sub(digits, 1, -3)
  if cents ~= "00" then text = text .. "." .. cents end
  return sign .. text
end

function readers.money(walk, tree, field)
  local range = take(walk, 8)
  if not range then return false end
  local value = range:le_int64()
  tree:add_le(field.proto, range, value, field.label .. ": " .. money_text(value))
  add_shared(tree, field, range)
  return true
end

-- A day count as "2010-05-17 12:34:56.789 UTC". Below zero the days count backwards, and their time still forwards.
local function time_text(days)
  if not (days > -657435 and days < 2958466) then return "no date" end -- before the year 100, after 9999, no number
  local day = days < 0 and math.ceil(days) or math.floor(days)
  local milliseconds = math.floor(math.abs(days - day) * 86400000 + 0.5)
  if milliseconds >= 86400000 then
    day, milliseconds = day + 1, milliseconds - 86400000
  end
  -- Counted from 0000-03-01, in years that begin in March and periods of 400 years, which have 146097 days.
  local since = day + 693899
  local period = math.floor(since / 146097)
  local rest = since - period * 146097
  local year = math.floor((rest - math.floor(rest / 1460) + math.floor(rest / 36524) - math.floor(rest / 146096)) / 365)
  local of_year = rest - (365 * year + math.floor(year / 4) - math.floor(year / 100))
  local month = math.floor((5 * of_year + 2) / 153)
  local of_month = of_year - math.floor((153 * month + 2) / 5) + 1
  year = year + period * 400
  if month < 10 then
    month = month + 3
  else
    month, year = month - 9, year + 1
  end
  local seconds = math.floor(milliseconds / 1000)
  return string.format("%04d-%02d-%02d %02d:%02d:%02d.%03d UTC", year, month, of_month, math.floor(seconds / 3600),
    math.floor(seconds / 60) % 60, seconds % 60, milliseconds % 1000)
end

readers["date-time"] = function(walk, tree, field)
  local range = take(walk, 8)
  if not range then return false end
  tree:add_le(field.proto, range):append_text(" (" .. time_text(range:le_float()) .. ")")
  return true
end

-- Where the field may be shown below: nil for a secret, of which the place alone is told.
local function below_guard(tree, field, range)
  if not field.secret then return tree end
  local item = tree:add(field.place, range)
  if cmdproc.prefs.show_secrets then return item end
  item:set_text(field.label .. ": ***")
  return nil
end

function readers.string(walk, tree, field)
  if left(walk) == 0 then return fail(walk, "takes a string, no bytes are left") end
  walk.raw = walk.raw or walk.tvb:raw(walk.base, walk.stop)
  local nul = string.find(walk.raw, "\0", walk.position + 1, true)
  if not nul then return fail(walk, "has no NUL at its end") end
  local size = nul - 1 - walk.position
  if field.size ~= 0 and size > field.size then
    return fail(walk, string.format("has %d characters, room is for %d", size, field.size))
  end
  local range = take(walk, size + 1)
  local parent = below_guard(tree, field, range)
  if parent then parent:add_packet_field(field.proto, range, ENC_ISO_8859_1) end
  return true
end

-- Reads the number in front of the field's elements; nil when they cannot be read.
local function read_count(walk, tree, field)
  local count = field.count
  local range = take(walk, count.width)
  if not range then return nil end
  tree:add_le(count.proto, range)
  local number = count.signed and range:le_int() or range:le_uint()
  -- A negative one is believed as little as one that is too large.
  if number < 0 then number = field.below_one and 0 or 4294967295 end
  if field.most ~= 0 and number > field.most then
    fail(walk, string.format("has %.0f elements, the most is %d", number, field.most))
    return nil
  end
  return number
end

function readers.bytes(walk, tree, field)
  local size = field.size
  if field.count then
    size = read_count(walk, tree, field)
    if not size then return false end
  end
  local range = take(walk, size)
  if not range then return false end
  local parent = below_guard(tree, field, range)
  if parent then
    local item = parent:add(field.proto, range)
    if size == 0 then item:set_text(field.label .. ": none") end
  end
  return true
end

function readers.zeros(walk, tree, field)
  local range = take(walk, field.size)
  if not range then return false end
  tree:add(range, string.format("%d bytes that carry nothing", field.size))
  return true
end

-- Adds a node for what has parts, lets `read` put them there, and gives the node their length.
local function nest(walk, node, read)
  local start = walk.position
  local whole = read(node)
  node:set_len(walk.position - start)
  return whole
end

function readers.record(walk, tree, field, index)
  local node = tree:add(field.proto, here(walk))
  if index then node:set_text(string.format("%s[%d]", field.label, index)) end
  return nest(walk, node, function() return read_fields(walk, node, field.fields) end)
end

-- A day count and its status are read in one piece, or not at all.
readers["date-time-status"] = function(walk, tree, field, index)
  return has_left(walk, field.size) and readers.record(walk, tree, field, index)
end

-- A card is one byte: 255 when it is hidden, 100 and its face when its owner alone sees it, else its face.
function readers.card(walk, tree, field)
  local range = take(walk, 1)
  if not range then return false end
  local byte = range:uint()
  local values = { suit = 0, rank = 0, visibility = 1 }
  if byte < 255 then
    local face = byte % 256
    values.visibility = 4
    if byte >= 100 then
      face = byte - 100
      values.visibility = 3
    end
    values.suit, values.rank = math.floor(face / 16), face % 16
  end
  local item = tree:add(field.proto, range)
  for _, part in ipairs(field.fields) do item:add(part.proto, range, values[part.name]) end
  if values.visibility == 1 then
    item:set_text(field.label .. ": hidden")
  else
    local of = values.visibility == 3 and ", seen by its owner" or ""
    item:set_text(string.format("%s: %s of %ss%s", field.label, RANKS[values.rank] or values.rank,
      SUITS[values.suit] or values.suit, of))
  end
  return true
end

function readers.flags(walk, tree, field)
  local range = take(walk, 1)
  if not range then return false end
  local item = tree:add(field.proto, range)
  for _, flag in ipairs(field.fields) do item:add(flag.proto, range) end
  return true
end

function readers.list(walk, tree, field)
  local element = field.fields[1]
  local node = tree:add(here(walk), field.label)
  return nest(walk, node, function()
    local elements
    if field.count then
      elements = read_count(walk, node, field)
      if not elements then return false end
    else
      elements = number_named(walk, field.counted)
    end
    for i = 0, elements - 1 do
      if not element.read(walk, node, element, i) then
        table.insert(walk.path, i)
        return false
      end
    end
    return true
  end)
end

function readers.map(walk, tree, field)
  local node = tree:add(here(walk), field.label)
  return nest(walk, node, function()
    local entries = read_count(walk, node, field)
    if not entries then return false end
    for i = 0, entries - 1 do
      local entry = node:add(here(walk), string.format("%s[%d]", field.label, i))
      if not nest(walk, entry, function() return read_fields(walk, entry, field.fields) end) then
        table.insert(walk.path, i)
        return false
      end
    end
    return true
  end)
end

-- "prizes[2].key"
local function path_text(path)
  local text = ""
  for i = #path, 1, -1 do
    local step = path[i]
    if type(step) == "number" then
      text = string.format("%s[%d]", text, step)
    elseif step ~= "" then
      text = text == "" and step or text .. "." .. step
    end
  end
  return text
end

-- From the table to fields of Wireshark -------------------------------------------------------------------------------

local all_fields = {}

local function register(make, abbreviation, ...)
  local field = make(abbreviation, ...)
  table.insert(all_fields, field)
  return field
end

local function prepare_fields(fields, prefix)
  for _, field in ipairs(fields) do
    -- The element of a list has no name of its own.
    local abbreviation = field.key == "" and prefix.abbreviation or prefix.abbreviation .. "." .. field.key
    field.label = field.key == "" and prefix.label or field.name
    field.size = field.size or 0
    field.most = field.most or 0
    field.width = WIDTHS[field.type]
    field.read = readers[field.type]
    if field.count then
      local count = field.count
      field.count = {
        width = WIDTHS[count],
        signed = string.sub(count, 1, 1) == "i",
        proto = register(ProtoField[PROTO_FIELDS[count]], abbreviation .. ".count", field.label .. " count"),
      }
    end
    if field.secret then
      field.place = register(ProtoField.none, abbreviation, field.label)
      abbreviation = abbreviation .. ".clear"
    end
    local kind = PROTO_FIELDS[field.type]
    if field.mask then
      field.proto = register(ProtoField.bool, abbreviation, field.label, 8, nil, field.mask)
    elseif prefix.card then
      field.proto = register(ProtoField.uint8, abbreviation, field.label, base.DEC, CARD_VALUES[field.name])
    elseif kind then
      field.proto = register(ProtoField[kind], abbreviation, field.label)
    end
    if field.fields then
      prepare_fields(field.fields, { abbreviation = abbreviation, label = field.label, card = field.type == "card" })
    end
  end
end

local by_pair = {}

for _, field in pairs(own) do table.insert(all_fields, field) end
for _, field in pairs(shared) do table.insert(all_fields, field) end
for _, command in ipairs(COMMANDS) do
  local abbreviation = "cmdproc." .. command.key
  command.proto = register(ProtoField.none, abbreviation, command.name)
  prepare_fields(command.fields, { abbreviation = abbreviation, label = command.name })
  by_pair[command.family * 256 + command.code] = command
end
cmdproc.fields = all_fields

-- Frames --------------------------------------------------------------------------------------------------------------

local dissect_frames

-- Nobody looks at the tree of most packets: the list of packets needs the names alone, and the marks. Their fields are
-- put here.
local nowhere = {}
for _, method in ipairs({ "add", "add_le", "add_packet_field", "append_text", "set_hidden", "set_len", "set_text" }) do
  nowhere[method] = function() return nowhere end
end
-- Of the packet that is dissected right now: whether nobody looks, and its tree.
local unseen = false
local root

-- Marks what cannot be read, from a byte of the frame to its end.
local function mark(tree, tvb, first, size, info, text)
  if tree == nowhere then tree = root end
  tree:add(own.problem, tvb(first, size), text):add_proto_expert_info(info, text)
end

-- Shows the commands of a batch, which is read already: real size, size of the body, body.
-- Returns their names.
local function dissect_batch(tvb, offset, stop, pinfo, tree)
  local real_size = tvb(offset + SHORTEST_FRAME, 4):le_uint()
  local body_offset = offset + SHORTEST_FRAME + 8
  local body_size = offset + stop - body_offset
  local function refuse(problem)
    mark(tree, tvb, body_offset, body_size, marks.batch, "the batch " .. problem)
    return "damaged"
  end
  if real_size > LARGEST_BATCH then return refuse("announces more than a batch may hold") end
  if real_size > body_size * 1032 + 64 then return refuse("announces more than its body can hold") end
  local inflated = body_size > 0 and tvb(body_offset, body_size):uncompress("Batch")
  if not inflated then return refuse("is damaged") end
  if inflated:len() > real_size then return refuse("holds more than it announces") end
  if inflated:len() < real_size then return refuse("holds less than it announces") end
  if real_size == 0 then return "empty" end -- no buffer can be made of nothing
  return dissect_frames(inflated:tvb(), pinfo, tree, true)
end

local CUT = "the capture does not have all bytes of this command"

-- Shows a frame whose bytes are all there, unless the capture is cut.
-- Returns the name of its command for the packet list.
local function dissect_frame(tvb, offset, size, pinfo, tree, in_batch)
  local captured = math.min(size, tvb:len() - offset)
  local node = unseen and nowhere or tree:add(cmdproc, tvb(offset, captured))
  node:add_le(own.length, tvb(offset, LENGTH_SLOT))
  if captured < SHORTEST_FRAME then
    mark(node, tvb, offset, captured, marks.cut, CUT)
    return "cut off"
  end
  local code, family = tvb(offset + 4, 1):uint(), tvb(offset + 5, 1):uint()
  node:add(own.code, tvb(offset + 4, 1))
  node:add(own.family, tvb(offset + 5, 1))
  local command = by_pair[family * 256 + code]
  if not command then
    local text = string.format("family %d, code %d: no command, %d bytes left", family, code, size - SHORTEST_FRAME)
    node:set_text("Poker command, unknown")
    mark(node, tvb, offset + 4, captured - 4, marks.unknown, text)
    return string.format("unknown (%d, %d)", family, code)
  end
  node:set_text("Poker command, " .. command.name)
  node:add(own.command, tvb(offset + 4, 2), command.name)
  if command.batch and in_batch then
    mark(node, tvb, offset, captured, marks.batch, "the batch holds another batch")
    return command.name .. " (damaged)"
  end

  local fields = node:add(command.proto, tvb(offset + 4, captured - 4))
  local walk = { tvb = tvb, base = offset, position = SHORTEST_FRAME, stop = captured, numbers = {} }
  local whole = read_fields(walk, fields, command.fields)
  if captured < size then
    mark(node, tvb, offset, captured, marks.cut, CUT)
    return command.name .. " (cut off)"
  end
  if whole and left(walk) ~= 0 then
    whole = fail(walk, string.format("%d bytes are left behind the last field", left(walk)))
  end
  if not whole then
    local path = path_text(walk.path)
    local place = path == "" and "" or path .. " "
    local text = string.format("%s: %sat byte %d, %d bytes left: %s", command.name, place, walk.position, left(walk),
      walk.problem)
    mark(fields, tvb, offset + walk.position, left(walk), marks.malformed, text)
    return command.name .. " (malformed)"
  end
  if command.batch then
    return string.format("%s (%s)", command.name, dissect_batch(tvb, offset, captured, pinfo, fields))
  end
  return command.name
end

-- Shows frames of which each is whole in the buffer.
-- Returns the names of their commands.
function dissect_frames(tvb, pinfo, tree, in_batch)
  local names = {}
  local offset = 0
  while offset < tvb:len() do
    local rest = tvb:reported_len() - offset
    local length = tvb:len() - offset >= LENGTH_SLOT and tvb(offset, LENGTH_SLOT):le_uint() or 0
    if length < SHORTEST_FRAME or length > rest then
      local node = tree:add(cmdproc, tvb(offset))
      local text = string.format("%d bytes that are no whole frame", rest)
      mark(node, tvb, offset, tvb:len() - offset, marks.framing, text)
      table.insert(names, "no frame")
      break
    end
    table.insert(names, dissect_frame(tvb, offset, length, pinfo, tree, in_batch))
    offset = offset + length
  end
  return table.concat(names, ", ")
end

-- Why a length cannot be right; nil when it can.
local function wrong_length(length)
  if length < SHORTEST_FRAME then
    return string.format("a frame of %.0f bytes is below the minimum of %d", length, SHORTEST_FRAME)
  end
  if length > cmdproc.prefs.longest then
    return string.format("a frame of %.0f bytes is above the limit of %d", length, cmdproc.prefs.longest)
  end
  return nil
end

-- Of the TCP segments that are dissected right now.
local names_of_segment = {}

-- Behind a wrong length nothing is in step: all the rest is one piece, so that it is marked once.
local function length_of_pdu(tvb, _, offset)
  local length = tvb(offset, LENGTH_SLOT):le_uint()
  return wrong_length(length) and tvb:reported_len() - offset or length
end

local function dissect_pdu(tvb, pinfo, tree)
  local length = tvb(0, LENGTH_SLOT):le_uint()
  local problem = wrong_length(length)
  local name
  if problem then
    local node = tree:add(cmdproc, tvb())
    node:add_le(own.length, tvb(0, LENGTH_SLOT))
    mark(node, tvb, 0, tvb:len(), marks.framing, problem .. "; the stream is out of step")
    name = "no frame"
  else
    name = dissect_frame(tvb, 0, length, pinfo, tree, false)
  end
  table.insert(names_of_segment, name)
  return tvb:len()
end

local this -- as a dissector

function cmdproc.dissector(tvb, pinfo, tree)
  pinfo.cols.protocol = "cmdproc"
  root = tree
  unseen = not tree.visible and not tree:referenced(this)
  local info = pinfo.cols.info
  local names
  if pinfo.can_desegment > 0 then
    names_of_segment = {}
    dissect_tcp_pdus(tvb, tree, LENGTH_SLOT, length_of_pdu, dissect_pdu)
    names = table.concat(names_of_segment, ", ")
  else -- an exported PDU, or TCP that is not to be put together again
    names = dissect_frames(tvb, pinfo, tree, false)
  end
  -- A segment may end one frame and have others, which come here one after the other; TCP keeps the names of the former.
  if names ~= "" then
    info:clear()
    local earlier = tostring(info)
    info:append((earlier == "" or earlier == "(info)") and names or ", " .. names)
  end
  return tvb:len()
end
this = Dissector.get("cmdproc")

-- Ports ---------------------------------------------------------------------------------------------------------------

local tcp_ports = DissectorTable.get("tcp.port")
local ports = ""

function cmdproc.prefs_changed()
  if ports == cmdproc.prefs.tcp_ports then return end
  if ports ~= "" then tcp_ports:remove(ports, cmdproc) end
  ports = cmdproc.prefs.tcp_ports
  if ports ~= "" then tcp_ports:add(ports, cmdproc) end
end

tcp_ports:add_for_decode_as(cmdproc)
