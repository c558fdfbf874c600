"use strict";
// Reads commands by their schema alone: every value, and the first byte that cannot be read. Knows nothing of the page.
//
//   const decoder = makeDecoder(schema);
//   decoder.parseHex("0A 00 ... # comment")  -> {bytes, problem}
//   decoder.frames(bytes)                    -> [{offset, bytes, command?, rows, failure?, problem?}]
//   decoder.inflate(frame)                   -> promise of the commands inside a batch, the same way, or of a problem
//   decoder.example("ClSitDown")             -> bytes of a command of that class with every part present
function makeDecoder(schema) {
  const kLengthSlot = 4;
  const kFrameBytes = 2; // type code, family
  const kShortestFrame = kLengthSlot + kFrameBytes;
  const kLargestBatch = 64 * 1024 * 1024;

  const byPair = new Map();
  const byName = new Map();
  for (const command of schema.commands) {
    byName.set(command.name, command);
    if (!command.namesake) byPair.set(command.family * 256 + command.code, command);
  }

  const hex = (byte) => byte.toString(16).toUpperCase().padStart(2, "0");

  function parseHex(text) {
    const bytes = [];
    let half = -1;
    const lines = text.split("\n");
    for (let i = 0; i < lines.length; ++i) {
      for (const character of lines[i].replace(/#.*/, "")) {
        if (/\s/.test(character)) continue;
        if (!/[0-9a-fA-F]/.test(character)) {
          return { bytes: new Uint8Array(bytes), problem: `line ${i + 1}: '${character}' is no hexadecimal digit` };
        }
        const digit = parseInt(character, 16);
        if (half < 0) {
          half = digit;
        } else {
          bytes.push(half * 16 + digit);
          half = -1;
        }
      }
    }
    const problem = half < 0 ? "" : "the text ends in the middle of a byte";
    return { bytes: new Uint8Array(bytes), problem };
  }

  function littleEndian(bytes) {
    let value = 0n;
    for (let i = bytes.length - 1; i >= 0; --i) value = (value << 8n) | BigInt(bytes[i]);
    return value;
  }
  function numberOf(type, bytes) {
    const value = littleEndian(bytes);
    return schema.numbers[type].signed ? BigInt.asIntN(8 * bytes.length, value) : value;
  }
  function quoted(bytes) {
    let text = '"';
    for (const byte of bytes) {
      if (byte === 0x0a) text += "\\n";
      else if (byte < 0x20 || byte > 0x7e) text += "\\x" + hex(byte);
      else if (byte === 0x22 || byte === 0x5c) text += "\\" + String.fromCharCode(byte);
      else text += String.fromCharCode(byte);
    }
    return text + '"';
  }
  function moneyText(hundredths) {
    const magnitude = hundredths < 0n ? -hundredths : hundredths;
    const cents = magnitude % 100n;
    const fraction = cents === 0n ? "" : "." + cents.toString().padStart(2, "0");
    return (hundredths < 0n ? "-" : "") + (magnitude / 100n).toString() + fraction;
  }
  function realOf(bytes) {
    const view = new DataView(new ArrayBuffer(8));
    bytes.forEach((byte, i) => view.setUint8(i, byte));
    return view.getFloat64(0, true);
  }
  /// A day count's fraction is the time of the day, before 1899-12-30 too.
  function dateText(days) {
    if (!(Math.abs(days) < 3e6)) return "";
    const whole = Math.trunc(days);
    const seconds = Math.round(Math.abs(days - whole) * 86400);
    const date = new Date(Date.UTC(1899, 11, 30) + whole * 86400000 + seconds * 1000);
    return date.toISOString().slice(0, 19).replace("T", " ");
  }

  const isPacked = (field) => field.type === "card" || field.type === "flags";
  const fieldsOf = (field) => (field.type === "record" ? schema.records[field.record] : field.fields);

  /// What the page shows of a piece of bytes: its type, its value, and what that means.
  function describe(field, bytes, isCount) {
    const type = isCount ? field.count : field.type;
    if (isCount) {
      const number = numberOf(type, bytes);
      return { type, value: number.toString(), meaning: type === field.type ? "" : "how many follow" };
    }
    switch (type) {
      case "string":
        return { type, value: quoted(bytes.subarray(0, -1)), meaning: "" };
      case "bytes":
        return { type, value: Array.from(bytes, hex).join(" "), meaning: bytes.length === 0 ? "none" : "" };
      case "zeros":
        return { type, value: "", meaning: bytes.every((byte) => byte === 0) ? "carries nothing" : "should be zero" };
      case "card":
        return { type, value: schema.cards[bytes[0]], meaning: "" };
      case "flags": {
        const set = field.fields.filter((flag) => (bytes[0] & flag.mask) !== 0).map((flag) => flag.name);
        return { type, value: set.join(", ") || "none", meaning: "" };
      }
      case "double":
      case "date-time": {
        const real = realOf(bytes);
        const value = Number.isFinite(real) ? String(real) : "0x" + littleEndian(bytes).toString(16).toUpperCase().padStart(16, "0");
        const meaning = !Number.isFinite(real) ? "no finite number" : type === "date-time" ? dateText(real) : "";
        return { type, value, meaning };
      }
      case "bool": {
        const byte = bytes[0];
        return { type, value: byte !== 0 ? "true" : "false", meaning: byte > 1 ? String(byte) : "" };
      }
      case "money":
        return { type, value: moneyText(numberOf(type, bytes)), meaning: "" };
      default:
        return { type, value: numberOf(type, bytes).toString(), meaning: "" };
    }
  }

  /// The rules of reading. Failures are thrown, as {path, offset, remaining, problem}; rows holds what was read before.
  function walk(command, bytes, rows) {
    let position = kFrameBytes;
    const path = [];
    const numbers = []; // that were read in the records that are open
    const left = () => bytes.length - position;
    const pathText = () =>
      path.reduce((text, name) => text + (typeof name === "number" ? `[${name}]` : (text && name ? "." : "") + name), "");
    const fail = (problem, here = pathText()) => {
      throw { path: here, offset: position, remaining: left(), problem };
    };
    const numberNamed = (name) => {
      for (let i = numbers.length - 1; i >= 0; --i) if (numbers[i].name === name) return numbers[i].value;
      return 0n;
    };
    const holds = (condition) => {
      const value = numberNamed(condition.field);
      return condition.has !== undefined ? (value & BigInt(condition.has)) !== 0n : (value !== 0n) === condition.is;
    };
    const inside = (name, read) => {
      path.push(name);
      read();
      path.pop();
    };
    const require = (size) => {
      if (left() < size) fail(`takes ${size} bytes, ${left()} are left`);
    };
    const take = (field, size, isCount = false) => {
      require(size);
      const piece = bytes.subarray(position, position + size);
      const shown = describe(field, piece, isCount);
      rows.push({ offset: position, bytes: piece, path: pathText(), field, isCount, secret: !!field.secret && !isCount, ...shown });
      position += size;
      return piece;
    };
    /// The number in front of the field's elements or bytes.
    const count = (field) => {
      const number = numberOf(field.count, take(field, schema.numbers[field.count].size, true));
      // A negative one is believed as little as one that is too large.
      const size = number >= 0n ? Number(number) : field.belowOneIsNone ? 0 : 0xffffffff;
      if (field.most && size > field.most) fail(`has ${size} elements, the most is ${field.most}`);
      return size;
    };
    const text = (field) => {
      if (left() === 0) fail("takes a string, no bytes are left");
      const nul = bytes.indexOf(0, position);
      if (nul < 0) fail("has no NUL at its end");
      const size = nul - position;
      if (field.size && size > field.size) fail(`has ${size} characters, room is for ${field.size}`);
      take(field, size + 1);
    };
    const value = (field) => {
      switch (field.type) {
        case "string":
          return text(field);
        case "bytes":
          return void take(field, field.count ? count(field) : field.size || 0);
        case "zeros":
          return void take(field, field.size);
        case "list": {
          const elements = field.count ? count(field) : Number(numberNamed(field.countedBy));
          for (let i = 0; i < elements; ++i) inside(i, () => value(field.fields[0]));
          return;
        }
        case "map": {
          const entries = count(field);
          for (let i = 0; i < entries; ++i) inside(i, () => record(field.fields));
          return;
        }
        case "card":
        case "flags":
          return void take(field, field.size);
        case "date-time-status": // read in one piece, or not at all
          require(field.size);
          return record(field.fields);
        case "record":
          return record(schema.records[field.record]);
        default: {
          const number = numberOf(field.type, take(field, schema.numbers[field.type].size));
          numbers.push({ name: field.name, value: BigInt.asUintN(64, number) });
        }
      }
    };
    const record = (fields) => {
      const outer = numbers.length;
      for (const field of fields) {
        if ((field.conditions || []).every(holds)) inside(field.name || "", () => value(field));
      }
      numbers.length = outer;
    };
    record(command.fields);
    if (left() !== 0) fail(`${left()} bytes are left behind the last field`, "");
  }

  /// A text that the player reads for the code in this row.
  function addTexts(command, rows) {
    const texts = schema.texts[command.name];
    if (!texts) return;
    const row = rows.find((each) => each.path === texts.field);
    if (row && texts.codes[row.value]) row.meaning = texts.codes[row.value];
  }

  /// One command without its length slot; offsets count from its type code byte.
  function decodeCommand(bytes) {
    const rows = [];
    if (bytes.length < kFrameBytes) {
      return { rows, failure: { path: "", offset: 0, remaining: bytes.length, problem: "no frame" } };
    }
    const command = byPair.get(bytes[1] * 256 + bytes[0]);
    if (!command) {
      const problem = `no command class has family ${bytes[1]} and code ${bytes[0]}`;
      return { rows, failure: { path: "", offset: 0, remaining: bytes.length, problem } };
    }
    let failure = null;
    try {
      walk(command, bytes, rows);
    } catch (thrown) {
      if (thrown instanceof Error) throw thrown;
      failure = thrown;
    }
    addTexts(command, rows);
    return { command, rows, failure };
  }

  /// The buffers of a stream, one after the other; offsets count from the stream's first byte.
  function frames(bytes) {
    const found = [];
    for (let offset = 0; offset < bytes.length; ) {
      const rest = bytes.length - offset;
      const length = rest < kLengthSlot ? 0 : Number(littleEndian(bytes.subarray(offset, offset + kLengthSlot)));
      let problem = "";
      if (rest < kLengthSlot) problem = `ends within the length slot, after ${rest} bytes of it`;
      else if (length < kShortestFrame) problem = `announces ${length} bytes, the shortest buffer has ${kShortestFrame}`;
      else if (length > rest) problem = `announces ${length} bytes, ${rest} are there`;
      const end = problem && length < kShortestFrame ? bytes.length : Math.min(bytes.length, offset + length);
      const whole = bytes.subarray(offset, end);
      const frame = { offset, bytes: whole, length, problem, rows: [], failure: null };
      // What is there of a cut buffer is read too: that shows where it stops.
      if (whole.length >= kShortestFrame) {
        const { command, rows, failure } = decodeCommand(whole.subarray(kLengthSlot));
        for (const each of failure ? [...rows, failure] : rows) each.offset += offset + kLengthSlot;
        Object.assign(frame, { command, rows, failure });
      }
      found.push(frame);
      if (problem) break;
      offset = end;
    }
    return found;
  }

  async function inflate(frame) {
    const body = frame.rows.find((row) => row.type === "bytes");
    const announced = Number(frame.rows[0].value);
    if (announced > kLargestBatch) return { problem: "announces more than a batch may hold" };
    if (typeof DecompressionStream === "undefined") return { problem: "this browser cannot inflate it" };
    const inflated = new Uint8Array(announced);
    let size = 0;
    try {
      const reader = new Blob([body.bytes]).stream().pipeThrough(new DecompressionStream("deflate")).getReader();
      for (;;) {
        const { done, value } = await reader.read();
        if (done) break;
        if (size + value.length > announced) {
          await reader.cancel();
          return { problem: "holds more than it announces" };
        }
        inflated.set(value, size);
        size += value.length;
      }
    } catch (error) {
      return { problem: "is damaged: zlib cannot inflate it" };
    }
    if (size !== announced) return { problem: "holds less than it announces" };
    return { frames: frames(inflated) };
  }

  /// A command that shows all that its class can carry: every part present, one element in each list and map.
  function example(name) {
    const command = byName.get(name);
    const wanted = new Map(); // what a number must be, so that the fields that hang on it travel
    const learn = (fields) => {
      for (const field of fields) {
        for (const condition of field.conditions || []) {
          const before = wanted.get(condition.field) || 0n;
          wanted.set(condition.field, condition.has !== undefined ? before | BigInt(condition.has) : condition.is ? 1n : 0n);
        }
        if (field.countedBy) wanted.set(field.countedBy, 1n);
        if (!isPacked(field) && fieldsOf(field)) learn(fieldsOf(field));
      }
    };
    learn(command.fields);
    const bytes = [];
    const number = (type, value) => {
      for (let i = 0; i < schema.numbers[type].size; ++i) bytes.push(Number((value >> BigInt(8 * i)) & 0xffn));
    };
    const write = (field) => {
      if (field.count) number(field.count, 1n);
      if (field.type === "string") {
        const text = (field.name || "text").slice(0, field.size || 40);
        bytes.push(...new TextEncoder().encode(text), 0);
      } else if (field.type === "bytes") {
        bytes.push(...new Array(field.count ? 1 : field.size || 0).fill(0));
      } else if (field.type === "zeros" || field.type === "flags") {
        bytes.push(...new Array(field.size).fill(0));
      } else if (field.type === "card") {
        bytes.push(3 * 16 + 12);
      } else if (fieldsOf(field)) {
        fieldsOf(field).forEach(write);
      } else if (field.type === "date-time") {
        bytes.push(0, 0, 0, 0, 0, 0x6a, 0xe8, 0x40);
      } else {
        number(field.type, wanted.get(field.name) ?? (field.type === "money" ? 1250n : 0n));
      }
    };
    command.fields.forEach(write);
    const length = kShortestFrame + bytes.length;
    return new Uint8Array([length & 255, (length >> 8) & 255, (length >> 16) & 255, 0, command.code, command.family, ...bytes]);
  }

  return { parseHex, frames, inflate, example, hex };
}
