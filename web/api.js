// The host's HTTP API: rows, data and commands. Failures become ApiError
// with the message the host or the module gave, ready to be shown.
import { t } from './words.js';

class ApiError extends Error {
  constructor(status, message, name) {
    super(message);
    this.status = status;
    this.name = name || 'error';
  }
}

const networkListeners = new Set();
export function onNetworkFailure(fn) {
  networkListeners.add(fn);
}

async function call(method, url, body) {
  let response;
  try {
    response = await fetch(url, {
      method,
      headers: body === undefined ? undefined : { 'Content-Type': 'application/json' },
      body: body === undefined ? undefined : JSON.stringify(body),
      cache: 'no-store',
    });
  } catch {
    networkListeners.forEach((fn) => fn());
    throw new ApiError(0, t('offline'), 'offline');
  }
  const text = await response.text();
  let json = null;
  try {
    json = text ? JSON.parse(text) : null;
  } catch {
    json = null;
  }
  if (!response.ok) {
    const error = (json && json.error) || {};
    throw new ApiError(response.status, error.message || error.title || `HTTP ${response.status}`, error.name);
  }
  return json;
}

function query(params) {
  return new URLSearchParams(Object.entries(params).filter(([, v]) => v !== undefined)).toString();
}

export function rows(path, from, to, roles = '*') {
  return call('GET', '/api/v1/rows?' + query({ path, roles, from, to }));
}

// A list's title as its rows name it: a node's own title is only known
// once its rows were asked for.
export async function titleOf(path) {
  return (await rows(path, 0, 0, 'title')).title;
}

export function data(path, roles) {
  return call('GET', '/api/v1/data?' + query({ path, roles }));
}

export async function value(path) {
  const answer = await data(path, 'value');
  return answer ? answer.value : null;
}

export function setData(path, val) {
  return call('POST', '/api/v1/data', { path, value: val === undefined ? null : val });
}

export function subscribe(paths) {
  return call('POST', '/api/v1/subscriptions', { subscribe: paths });
}

export function changeSubscription(id, change) {
  return call('PATCH', '/api/v1/subscriptions/' + encodeURIComponent(id), change);
}

export const text = (s) => ({ type: 'string_', string_: s });
export const bool = (b) => ({ type: 'bool_', bool_: b });
export const i32 = (n) => ({ type: 'i32_', i32_: n });

// A value of any scalar type, as the plain number, text or flag it holds.
export function plain(v) {
  if (!v || typeof v !== 'object' || !('type' in v)) return v;
  return v[v.type];
}

// A content path's parameters ("plid", "seqnum", ...), decoded.
export function pathParams(path) {
  const at = (path || '').indexOf('?');
  return new URLSearchParams(at < 0 ? '' : path.slice(at + 1).replace(/\+/g, '%2B'));
}

// A command's answer asks the client to close the menu it came from.
export function closesMenu(answer) {
  const events = (answer && answer.events) || [];
  return events.some((e) => e && (e.rowsType === 'close' || e.rowsType === 1));
}

// The path a command answered, for entries that lead somewhere (a search).
export function answeredPath(answer) {
  const result = answer && answer.result && answer.result.value;
  const target = plain(result);
  return typeof target === 'string' && /^[a-z][a-z0-9_]*:\//.test(target) ? target : null;
}
