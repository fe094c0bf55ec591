// The host goes away under an open page and comes back (in German): the page
// says it is offline, reconnects by itself and shows what is there now.
import assert from 'node:assert/strict';
import { scenario, row } from './harness.mjs';

scenario('the host restarts under an open page and the page recovers', { phone: true, dark: true, shot: 'restart-phone-dark' }, async ({ host, open }) => {
  await host.setData('playlists:/create-playlist', { name: 'Kept' });
  const page = await open({ hash: '#' + encodeURIComponent('playlists:/root') });
  await row(page, 'Kept').waitFor();

  await host.stop();
  const offline = page.getByRole('status').filter({ hasText: 'Offline' });
  await offline.waitFor();
  host.args.push('--set', 'settings:/language=de');
  await host.start();
  await offline.waitFor({ state: 'hidden' });

  // What was visible is fetched again: its titles are German now.
  const create = (await host.titles('playlists:/root'))[2];
  assert.notEqual(create, 'Create New Playlist');
  await page.getByPlaceholder(create).waitFor();
  await page.getByRole('button', { name: 'Start', exact: true }).first().waitFor();
  await host.setData('playlists:/create-playlist', { name: 'After' });
  await row(page, 'After').waitFor({ timeout: 1000 });
  await row(page, 'Kept').waitFor();
});
