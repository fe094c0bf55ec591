// Every text from the device reaches the page as a text node: names may hold
// markup, quotes or scripts, and must show as what they are.
export function h(tag, props, ...children) {
  const el = document.createElement(tag);
  for (const [key, value] of Object.entries(props || {})) {
    if (value === undefined || value === null || value === false) continue;
    if (key === 'class') el.className = value;
    else if (key === 'text') el.textContent = value;
    else if (key.startsWith('on')) el.addEventListener(key.slice(2), value);
    else el.setAttribute(key, value === true ? '' : value);
  }
  for (const child of children.flat()) {
    if (child !== null && child !== undefined && child !== false) el.append(child);
  }
  return el;
}

const SVG = 'http://www.w3.org/2000/svg';

// The symbols are defined once in the page; each use is a small reference.
export function icon(name) {
  const svg = document.createElementNS(SVG, 'svg');
  svg.setAttribute('class', 'icon');
  svg.setAttribute('aria-hidden', 'true');
  const use = document.createElementNS(SVG, 'use');
  use.setAttribute('href', '#i-' + name);
  svg.append(use);
  return svg;
}

// Artwork comes from the device's own files or from the web; nothing else
// (javascript:, file:) is given to the page.
export function safeImageUrl(url) {
  return typeof url === 'string' && /^(\/(?!\/)|https?:\/\/)/i.test(url) ? url : null;
}

export function formatTime(ms) {
  const total = Math.max(0, Math.floor((ms || 0) / 1000));
  const s = String(total % 60).padStart(2, '0');
  const m = Math.floor(total / 60);
  return m >= 60 ? `${Math.floor(m / 60)}:${String(m % 60).padStart(2, '0')}:${s}` : `${m}:${s}`;
}
