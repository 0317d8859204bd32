// Tells the mixer's host program which tabs are open, and brings one to the front when the host asks for it.
// The browser may end this worker at any time while there is no host, and starts it again with the next event; so
// everything here can be lost, and is found again by asking the browser.
"use strict";

const HOST = "app.quillmere.tabs";
const VERSION = chrome.runtime.getManifest().version;
/// Milliseconds. One page makes several events while it loads.
const GATHER = 300;
/// Milliseconds until a host that has ended is started again: doubled each time, and as before once it has spoken.
const SHORTEST_PAUSE = 1000;
const LONGEST_PAUSE = 60000;
/// Characters. Titles are no longer in the browser itself; an address may hold a whole picture.
const LONGEST_TITLE = 4096;
const LONGEST_ADDRESS = 2048;
/// Characters of one message; each is three bytes at most, and the host takes one mebibyte.
const LARGEST_MESSAGE = 200000;

let port = null;
let pause = SHORTEST_PAUSE;
let notBefore = 0;
/// Whether somebody wants to hear of tabs: the mixer may not run.
let isHeard = false;
/// What the host knows: the windows' text, and each tab's by its id.
let toldWindows = "";
let toldTabs = new Map();
let gathering = null;
let isTelling = false;
let isStale = false;

function connect() {
  if (port !== null || Date.now() < notBefore) return;
  const opened = chrome.runtime.connectNative(HOST);
  port = opened;
  opened.onMessage.addListener((message) => {
    if (port === opened) receive(message);
  });
  opened.onDisconnect.addListener(() => {
    // Read, or the browser takes it for an error that nobody has seen to.
    console.info(`the host has ended: ${chrome.runtime.lastError?.message ?? "no reason given"}`);
    if (port !== opened) return;
    port = null;
    isHeard = false;
    notBefore = Date.now() + pause;
    setTimeout(connect, pause);
    pause = Math.min(2 * pause, LONGEST_PAUSE);
  });
  opened.postMessage({companion: VERSION});
}

function receive(message) {
  for (const other of ["host", "mixer"]) {
    if (other in message && message[other] !== VERSION) {
      console.warn(`this companion is of version ${VERSION}, the ${other} of version ${message[other]}`);
    }
  }
  if ("listen" in message) {
    isHeard = message.listen === true;
    toldWindows = "";
    toldTabs = new Map();
    if (isHeard) {
      // One that greets and ends at once is not started anew each second.
      pause = SHORTEST_PAUSE;
      tell();
    }
  }
  if ("activate" in message) activate(message.activate).catch((error) => console.info(`not activated: ${error.message}`));
}

/// A text that any JSON reader takes: half a character, which a cut can leave, is none.
function whole(text, longest) {
  return (text ?? "").slice(0, longest).replace(/\p{Surrogate}/gu, "\ufffd");
}

/// Tells what has changed since it was last told.
async function tell() {
  if (isTelling) {
    isStale = true;
    return;
  }
  isTelling = true;
  try {
    do {
      isStale = false;
      const windows = await chrome.windows.getAll({populate: true});
      if (isHeard) tellOf(windows.map((each) => ({id: each.id, tabs: each.tabs ?? []})));
    } while (isStale);
  } finally {
    isTelling = false;
  }
}

/// Tabs first: then the windows never name one that is not known yet.
function tellOf(windows) {
  const tabs = new Map();
  let piece = [];
  let size = 0;
  for (const tab of windows.flatMap((each) => each.tabs)) {
    const told = [tab.id, tab.active ? 1 : 0, whole(tab.title, LONGEST_TITLE), whole(tab.url, LONGEST_ADDRESS)];
    const text = JSON.stringify(told);
    tabs.set(tab.id, text);
    if (toldTabs.get(tab.id) === text) continue;
    if (piece.length > 0 && size + text.length > LARGEST_MESSAGE) {
      port.postMessage({tabs: piece});
      piece = [];
      size = 0;
    }
    piece.push(told);
    size += text.length;
  }
  toldTabs = tabs;
  const message = {};
  if (piece.length > 0) message.tabs = piece;
  const order = windows.map((each) => [each.id, each.tabs.map((tab) => tab.id)]);
  if (JSON.stringify(order) !== toldWindows) {
    toldWindows = JSON.stringify(order);
    message.windows = order;
  }
  if (Object.keys(message).length > 0) port.postMessage(message);
}

/// A tab of `null` is one that is not there any more, and so is a window; both may have gone since. Without the tab its
/// window comes to the front, and without that the browser.
async function activate({window, tab}) {
  // A window that is put away comes back with it.
  const raise = (id) => chrome.windows.update(id, {focused: true});
  const chosen = tab === null ? null : await chrome.tabs.update(tab, {active: true}).catch(() => null);
  // It may be in another window by now.
  const wanted = chosen?.windowId ?? window;
  const raised = wanted === null ? null : await raise(wanted).catch(() => null);
  if (raised === null) await raise((await chrome.windows.getLastFocused()).id);
}

/// Something has changed; it is told with what else changes in the next moment.
function gather() {
  connect();
  if (!isHeard || gathering !== null) return;
  gathering = setTimeout(() => {
    gathering = null;
    tell();
  }, GATHER);
}

for (const event of ["onCreated", "onRemoved", "onActivated", "onMoved", "onAttached", "onDetached", "onReplaced"]) {
  chrome.tabs[event].addListener(gather);
}
chrome.tabs.onUpdated.addListener((id, change) => {
  if ("title" in change || "url" in change) gather();
});
chrome.windows.onCreated.addListener(gather);
chrome.windows.onRemoved.addListener(gather);
// They do nothing but wake this worker: a browser that has just started has no tab to tell of yet.
chrome.runtime.onStartup.addListener(connect);
chrome.runtime.onInstalled.addListener(connect);
connect();
