document.location.reload()
