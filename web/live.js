// One subscription and one event stream for the whole page. Views watch the
// paths they show; the stream's events reach them by path. When the stream
// breaks (the host restarts, the network drops) a new subscription with
// every watched path is made as soon as the host answers, and the page is
// told so it can refresh what it shows.
import { subscribe, changeSubscription, onNetworkFailure } from './api.js';

// The host sends a keep-alive line every 15 s; silence beyond this means the
// connection is dead even if no error surfaced.
const SILENCE_MS = 25000;
const RETRY_MIN_MS = 300;
const RETRY_MAX_MS = 2000;

const watchers = new Map();
const statusListeners = new Set();
let subscription = null;
let subscribed = new Set();
let stream = null;
let online = false;
let everOnline = false;
let retryMs = RETRY_MIN_MS;
let retryTimer = null;
let syncing = Promise.resolve();

const keyOf = (kind, path) => kind + ' ' + path;
const topic = (key) => ({ kind: key.slice(0, key.indexOf(' ')), path: key.slice(key.indexOf(' ') + 1) });

// fn(online, recovered): recovered when the page was offline and is back, or
// when the host dropped events it could not keep for us; either way what the
// page shows must be fetched again.
export function onStatus(fn) {
  statusListeners.add(fn);
}

// Starts watching kind ("rows" or "value") events of path; resolves once
// the host knows, and gives the function that stops watching.
export async function watch(kind, path, fn) {
  const key = keyOf(kind, path);
  if (!watchers.has(key)) watchers.set(key, new Set());
  watchers.get(key).add(fn);
  await sync();
  return () => {
    const fns = watchers.get(key);
    if (!fns) return;
    fns.delete(fn);
    if (fns.size === 0) {
      watchers.delete(key);
      sync();
    }
  };
}

// Brings the host's subscription in line with the watched paths, one change
// at a time.
function sync() {
  syncing = syncing.then(async () => {
    if (!subscription) return;
    const add = [...watchers.keys()].filter((k) => !subscribed.has(k));
    const remove = [...subscribed].filter((k) => !watchers.has(k));
    if (!add.length && !remove.length) return;
    const id = subscription;
    try {
      await changeSubscription(id, { subscribe: add.map(topic), unsubscribe: remove.map(topic) });
      if (id !== subscription) return;
      // Only what was sent: paths watched meanwhile are for the next round.
      add.forEach((k) => subscribed.add(k));
      remove.forEach((k) => subscribed.delete(k));
    } catch {
      if (id === subscription) reconnect();
    }
  });
  return syncing;
}

function setOnline(value) {
  if (online === value) return;
  online = value;
  const recovered = value && everOnline;
  if (value) everOnline = true;
  statusListeners.forEach((fn) => fn(value, recovered));
}

function reconnect() {
  if (stream) stream.abort();
}

export function start() {
  onNetworkFailure(() => {
    if (online) reconnect();
  });
  connect();
}

async function connect() {
  clearTimeout(retryTimer);
  const controller = new AbortController();
  stream = controller;
  let silence = null;
  const listen = () => {
    clearTimeout(silence);
    silence = setTimeout(() => controller.abort(), SILENCE_MS);
  };
  try {
    const keys = [...watchers.keys()];
    const { id } = await subscribe(keys.map(topic));
    subscription = id;
    subscribed = new Set(keys);
    listen();
    const response = await fetch('/api/v1/events/stream?subscription=' + encodeURIComponent(id), {
      signal: controller.signal,
      cache: 'no-store',
    });
    if (!response.ok || !response.body) throw new Error('stream refused');
    await sync();
    retryMs = RETRY_MIN_MS;
    setOnline(true);
    await read(response.body.getReader(), listen);
  } catch {
    // Whatever broke, the answer is the same: start over.
  }
  clearTimeout(silence);
  if (stream !== controller) return;
  stream = null;
  subscription = null;
  setOnline(false);
  retryTimer = setTimeout(connect, retryMs);
  retryMs = Math.min(retryMs * 2, RETRY_MAX_MS);
}

async function read(reader, listen) {
  const decoder = new TextDecoder();
  let buffer = '';
  for (;;) {
    const { value, done } = await reader.read();
    if (done) return;
    listen();
    buffer += decoder.decode(value, { stream: true });
    let end;
    while ((end = buffer.indexOf('\n\n')) >= 0) {
      const block = buffer.slice(0, end);
      buffer = buffer.slice(end + 2);
      for (const line of block.split('\n')) {
        if (line.startsWith('data:')) dispatch(JSON.parse(line.slice(5)));
      }
    }
  }
}

function dispatch(event) {
  if (event.kind === 'overflow') {
    statusListeners.forEach((fn) => fn(true, true));
    return;
  }
  const fns = watchers.get(keyOf(event.kind, event.path));
  if (fns) [...fns].forEach((fn) => fn(event));
}
