navigator.userAgentData?.brands.find(b => b.brand === 'Chromium')?.version || navigator.userAgent.match(/Chrome\/(\d+)/)?.[1] || ''
