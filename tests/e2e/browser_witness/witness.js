// Does in the browser what a test asks for, and tells what the browser says of its windows and tabs.
"use strict";

const commands = {
  async report() {
    const windows = await chrome.windows.getAll({populate: true});
    return windows.map((each) => ({
      focused: each.focused,
      state: each.state,
      tabs: each.tabs.map((tab) => ({active: tab.active, title: tab.title, url: tab.url})),
    }));
  },
  /// A window with these addresses, in this order.
  async openWindow({urls}) {
    await chrome.windows.create({url: urls, focused: true});
  },
  /// One more tab, in the window of this position.
  async openTab({window, url}) {
    const windows = await chrome.windows.getAll();
    await chrome.tabs.create({windowId: windows[window].id, url});
  },
  async closeTab({window, tab}) {
    const windows = await chrome.windows.getAll({populate: true});
    await chrome.tabs.remove(windows[window].tabs[tab].id);
  },
  /// Ends another extension's worker, or lets it begin anew.
  async enable({extension, enabled}) {
    await chrome.management.setEnabled(extension, enabled);
  },
  async minimize({window}) {
    const windows = await chrome.windows.getAll();
    await chrome.windows.update(windows[window].id, {state: "minimized"});
  },
};

const port = chrome.runtime.connectNative("app.quillmere.witness");
port.onMessage.addListener(async ({command, ...words}) => {
  try {
    port.postMessage({answer: (await commands[command](words)) ?? null});
  } catch (error) {
    port.postMessage({error: error.message});
  }
});
