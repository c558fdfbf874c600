"use strict";
// The page around the decoder: the search in the index, the table of what was decoded.
(() => {
  const kMostRows = 1000; // shown at once
  const kMostBytes = 64; // of one piece
  const $ = (id) => document.getElementById(id);
  const schema = JSON.parse($("schema").textContent);
  const decoder = makeDecoder(schema);

  function element(tag, className, ...children) {
    const made = document.createElement(tag);
    if (className) made.className = className;
    made.append(...children);
    return made;
  }

  // --- The decoder ---

  let limit = kMostRows;
  let run = 0; // batches of an earlier text that are still being inflated are dropped

  const shortened = (bytes) => {
    const text = Array.from(bytes.subarray(0, kMostBytes), decoder.hex).join(" ");
    return bytes.length > kMostBytes ? `${text} … ${bytes.length} bytes` : text;
  };

  function rowOf(offset, bytes, type, value, path, meaning, className) {
    const told = element("td", "");
    if (path) told.append(element("code", "", path), " ");
    if (meaning) told.append(element("span", "extra", meaning));
    const cells = [String(offset), bytes, type, value].map((text) => element("td", "", text));
    return element("tr", className, ...cells, told);
  }

  function tableOf(frame, budget) {
    const body = element("tbody", "");
    const slot = (at, size, type, value, meaning) =>
      body.append(rowOf(frame.offset + at, shortened(frame.bytes.subarray(at, at + size)), type, value, "", meaning, "slot"));
    if (frame.bytes.length >= 4) slot(0, 4, "u32", String(frame.length), "length of the buffer");
    if (frame.bytes.length >= 6) {
      slot(4, 1, "byte", String(frame.bytes[4]), frame.command ? `type code: ${frame.command.name}` : "type code");
      slot(5, 1, "byte", String(frame.bytes[5]), "family");
    }
    for (const row of frame.rows.slice(0, budget)) {
      const masked = row.secret && !$("secrets").checked;
      const value = row.type === "bytes" ? `${row.bytes.length} bytes` : row.value;
      body.append(
        rowOf(row.offset, masked ? "***" : shortened(row.bytes), row.type, masked ? "***" : value, row.path, masked ? "secret" : row.meaning),
      );
    }
    if (body.rows.length === 0) return "";
    const head = element("tr", "", ...["Offset", "Bytes", "Type", "Value", "Meaning"].map((text) => {
      const cell = element("th", "", text);
      cell.scope = "col";
      return cell;
    }));
    return element("table", "decoded", element("thead", "", head), body);
  }

  function failureOf(frame, failure) {
    const place = `at offset ${failure.offset}, ${failure.remaining} ${failure.remaining === 1 ? "byte" : "bytes"} remaining`;
    const what = failure.path ? `${failure.path} ${failure.problem}` : failure.problem;
    const name = frame.command ? frame.command.name : "Buffer";
    return element("p", "failure", element("b", "", name + ": "), `${what} (${place})`);
  }

  /// Shows buffers one after the other; a batch shows what it holds below itself.
  function show(frames, into, mine) {
    let left = limit;
    for (const frame of frames) {
      if (left <= 0) break;
      const title = element("h4", "");
      if (frame.command) {
        const link = element("a", "", frame.command.name);
        link.href = "#" + frame.command.name;
        title.append(link);
      } else {
        title.append("Buffer");
      }
      title.append(element("span", "quiet", `offset ${frame.offset}, ${frame.bytes.length} bytes`));
      const block = element("div", "buffer", title, tableOf(frame, left));
      left -= frame.rows.length + 1;
      if (frame.problem) {
        block.append(element("p", "failure", element("b", "", "The stream "), `${frame.problem} (at offset ${frame.offset})`));
      }
      if (frame.failure) block.append(failureOf(frame, frame.failure));
      if (frame.command && frame.command.name === schema.batch && !frame.failure && !frame.problem) {
        showBatch(frame, block, mine);
      }
      into.append(block);
    }
    if (left <= 0) {
      const more = element("button", "", "Show all");
      more.type = "button";
      more.addEventListener("click", () => {
        limit = Infinity;
        decode();
      });
      into.append(element("p", "", "The first rows are shown. ", more));
    }
  }

  async function showBatch(frame, block, mine) {
    const held = await decoder.inflate(frame);
    if (mine !== run) return;
    if (held.problem) {
      block.append(element("p", "failure", element("b", "", "The batch "), held.problem));
      return;
    }
    const inner = element("div", "buffer", element("p", "quiet", "The batch holds; offsets count from its first inflated byte:"));
    const nested = held.frames.find((each) => each.command && each.command.name === schema.batch);
    if (nested) {
      inner.append(element("p", "failure", element("b", "", "The batch "), "holds another batch, which no reader takes"));
    } else {
      show(held.frames, inner, mine);
    }
    block.append(inner);
  }

  function decode() {
    const mine = ++run;
    const { bytes, problem } = decoder.parseHex($("hex").value);
    const frames = decoder.frames(bytes);
    const shown = document.createDocumentFragment();
    show(frames, shown, mine);
    $("rows").replaceChildren(shown);
    const damaged = frames.filter((frame) => frame.problem || frame.failure).length;
    const parts = [];
    if (bytes.length !== 0) {
      parts.push(`${bytes.length} bytes, ${frames.length} ${frames.length === 1 ? "buffer" : "buffers"}` + (damaged ? `, ${damaged} damaged` : ""));
    }
    if (problem) parts.push(problem);
    $("status").textContent = parts.join("; ") + (parts.length ? "." : "");
  }

  function load(text) {
    limit = kMostRows;
    $("hex").value = text;
    decode();
  }

  let waiting = 0;
  $("hex").addEventListener("input", () => {
    clearTimeout(waiting);
    waiting = setTimeout(() => {
      limit = kMostRows;
      decode();
    }, 120);
  });
  $("secrets").addEventListener("change", decode);
  $("clear").addEventListener("click", () => {
    load("");
    $("hex").focus();
  });
  $("link").addEventListener("click", async () => {
    const digits = Array.from(decoder.parseHex($("hex").value).bytes, decoder.hex).join("");
    history.replaceState(null, "", "#hex=" + digits);
    try {
      await navigator.clipboard.writeText(location.href);
      $("status").textContent = "The link is in the clipboard.";
    } catch (error) {
      $("status").textContent = "The link is in the address bar.";
    }
  });
  for (const button of document.querySelectorAll("[data-hex]")) {
    button.addEventListener("click", () => load(button.dataset.hex));
  }
  for (const button of document.querySelectorAll("[data-example]")) {
    button.addEventListener("click", () => {
      const bytes = Array.from(decoder.example(button.dataset.example), decoder.hex).join(" ");
      load(`# ${button.dataset.example}, with every part and one element in each list\n${bytes}`);
      $("decoder").scrollIntoView();
      $("hex").focus({ preventScroll: true });
    });
  }

  /// "#hex=0A00...": a link to bytes.
  function followLink() {
    const link = /^#hex=(.*)$/s.exec(location.hash);
    if (!link) return;
    let text = link[1];
    try {
      text = decodeURIComponent(text);
    } catch {
      // No escaped text: it is shown as it stands, and the decoder says what is wrong with it.
    }
    load(text);
    $("decoder").scrollIntoView();
  }
  window.addEventListener("hashchange", followLink);

  // --- The index ---

  // What an entry is found by beside its name: its fields, and for commands family and code in several spellings.
  const extra = new Map();
  const fieldNames = (fields) => fields.map((field) => field.name).filter(Boolean);
  for (const command of schema.commands) {
    const codes = [`${command.family}/${command.code}`, `${command.family}, ${command.code}`, `${decoder.hex(command.code)} ${decoder.hex(command.family)}`];
    extra.set(command.name, { codes, code: String(command.code), fields: fieldNames(command.fields) });
  }
  for (const [name, fields] of Object.entries(schema.records)) extra.set(name, { codes: [], fields: fieldNames(fields) });

  const entries = Array.from(document.querySelectorAll("#index li"), (item) => {
    const link = item.querySelector("a");
    return { item, link, name: link.textContent, group: item.closest(".group"), hint: null, ...extra.get(link.textContent) };
  });

  /// How well an entry fits: 0 not at all, 3 by the beginning of its name. A field's name is told in `hint`.
  function fit(entry, wanted) {
    const name = entry.name.toLowerCase();
    entry.found = "";
    if (name.startsWith(wanted)) return 3;
    if (name.includes(wanted) || entry.code === wanted) return 2;
    if ((entry.codes || []).some((code) => code.toLowerCase() === wanted)) return 2;
    if (wanted.length < 2) return 0;
    const field = (entry.fields || []).find((each) => each.toLowerCase().includes(wanted));
    if (field) entry.found = field;
    return field ? 1 : 0;
  }

  let best = null;
  function search() {
    const wanted = $("search").value.trim().toLowerCase();
    let highest = 0;
    best = null;
    const groups = new Set();
    for (const entry of entries) {
      const fits = wanted === "" ? 1 : fit(entry, wanted);
      entry.item.hidden = fits === 0;
      if (fits !== 0) groups.add(entry.group);
      if (wanted !== "" && fits > highest) {
        highest = fits;
        best = entry;
      }
      if (entry.hint) entry.hint.remove();
      entry.hint = wanted !== "" && fits && entry.found ? element("span", "found", "field " + entry.found) : null;
      if (entry.hint) entry.item.append(entry.hint);
      entry.item.style.display = fits === 0 ? "none" : "";
    }
    for (const group of document.querySelectorAll("#index .group")) group.style.display = groups.has(group) ? "" : "none";
    $("nothing").hidden = groups.size !== 0;
    if (wanted !== "") $("index").open = true;
    for (const entry of entries) entry.item.classList.toggle("here", entry === best);
  }

  const narrow = window.matchMedia("(max-width: 56rem)");
  const fold = () => {
    $("index").open = !narrow.matches;
  };
  narrow.addEventListener("change", fold);
  fold();

  $("search").addEventListener("input", search);
  $("search").addEventListener("keydown", (event) => {
    if (event.key === "Enter" && best) {
      best.link.click();
      best.link.focus({ preventScroll: true });
    } else if (event.key === "Escape") {
      $("search").value = "";
      search();
    }
  });
  $("index").addEventListener("click", (event) => {
    if (narrow.matches && event.target.closest("a")) $("index").open = false;
  });
  // Arrow keys go through what was found; a slash begins a search.
  document.addEventListener("keydown", (event) => {
    if (event.key === "/" && !/^(INPUT|TEXTAREA)$/.test(document.activeElement.tagName) && !event.ctrlKey && !event.metaKey) {
      event.preventDefault();
      $("search").select();
      $("search").focus();
    }
    if (event.key !== "ArrowDown" && event.key !== "ArrowUp") return;
    const links = entries.filter((entry) => entry.item.style.display !== "none").map((entry) => entry.link);
    const at = links.indexOf(document.activeElement);
    if (at < 0 && document.activeElement !== $("search")) return;
    event.preventDefault();
    const next = at < 0 ? links[event.key === "ArrowDown" ? 0 : links.length - 1] : links[at + (event.key === "ArrowDown" ? 1 : -1)];
    (next || $("search")).focus();
  });

  followLink();
})();
